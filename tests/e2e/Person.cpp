// SPDX-License-Identifier: MIT
#include "tests/e2e/Person.h"

#include <QTest>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

/// Programs take a moment to answer to the mouse.
constexpr int momentMs = 300;

QByteArray xdotool(const QStringList& arguments) {
    QProcess tool;
    tool.start(u"xdotool"_s, arguments);
    if (!tool.waitForFinished(10000))
        qWarning("xdotool does not end");
    QTest::qWait(momentMs);
    return tool.readAllStandardOutput();
}

xcb_atom_t atom(xcb_connection_t* display, std::string_view name) {
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(display, xcb_intern_atom(display, 0, name.size(), name.data()),
                              nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

AccessibleTree::Wanted named(const QString& text) {
    return [text](const Person::Item& item) { return item.name.contains(text); };
}

} // namespace

std::optional<Person::Item> Person::find(const AccessibleTree::Wanted& wanted,
                                         int timeoutMs) const {
    std::optional<Item> found;
    const auto look = [&] {
        found = m_tree.find(wanted);
        return found.has_value();
    };
    if (!QTest::qWaitFor(look, timeoutMs))
        qWarning("not on the screen:\n%s", qPrintable(m_tree.text()));
    return found;
}

bool Person::sees(const QString& text, int timeoutMs) const {
    return find(named(text), timeoutMs).has_value();
}

bool Person::seesNow(const QString& text) const {
    return m_tree.find(named(text)).has_value();
}

std::optional<Person::Item> Person::control(const QString& text) const {
    return controlIn({}, text);
}

std::optional<Person::Item> Person::controlIn(QRect part, const QString& text) const {
    static const QStringList roles{u"push button"_s, u"check box"_s, u"radio button"_s,
                                   u"page tab"_s,    u"text"_s,      u"combo box"_s};
    return find([&](const Item& item) {
        return item.name.contains(text) && roles.contains(item.role) &&
               (part.isNull() || part.contains(m_tree.place(item)));
    });
}

bool Person::press(const QString& text) const {
    const auto item = control(text);
    if (item)
        press(item->place.center());
    return item.has_value();
}

void Person::press(QPoint place) {
    xdotool({u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s,
             u"1"_s});
}

void Person::type(const QString& text) {
    xdotool({u"type"_s, u"--"_s, text});
}

void Person::key(const QString& name) {
    xdotool({u"key"_s, name});
}

bool Person::close(const QString& title) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.type = atom(display.get(), "WM_PROTOCOLS");
    message.data.data32[0] = atom(display.get(), "WM_DELETE_WINDOW");
    const auto windows =
        xdotool({u"search"_s, u"--onlyvisible"_s, u"--name"_s, u'^' + title + u'$'}).simplified();
    bool isClosed = false;
    for (const QByteArray& window : windows.split(' ')) {
        message.window = window.toUInt();
        // Checked: what is under way when the connection ends may get lost.
        const auto sent = xcb_send_event_checked(display.get(), 0, message.window, 0,
                                                 reinterpret_cast<const char*>(&message));
        const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(
            xcb_request_check(display.get(), sent), &std::free);
        isClosed = isClosed || !error;
    }
    return isClosed;
}
