// SPDX-License-Identifier: MIT
// A file of its own, since Xlib's macros disturb others.
#include "bench/CloseWindow.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#undef Bool

namespace {

bool isShown(Display* display, Window window, const QByteArray& title) {
    XWindowAttributes attributes;
    char* name = nullptr;
    const bool found = XGetWindowAttributes(display, window, &attributes) != 0 &&
                       attributes.map_state == IsViewable &&
                       XFetchName(display, window, &name) != 0 && title == name;
    if (name)
        XFree(name);
    return found;
}

void askToClose(Display* display, Window window) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", 0);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", 0));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, window, 0, NoEventMask, &event);
}

} // namespace

bool closeWindow(const QByteArray& title) {
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return false;
    Window root = 0;
    Window parent = 0;
    Window* windows = nullptr;
    unsigned int count = 0;
    bool found = false;
    // Without a window manager there are no frames: all windows are the root's.
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &windows, &count) != 0) {
        for (unsigned int i = 0; i < count && !found; ++i) {
            found = isShown(display, windows[i], title);
            if (found)
                askToClose(display, windows[i]);
        }
        XFree(windows);
    }
    XCloseDisplay(display);
    return found;
}
