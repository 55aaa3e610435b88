// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Folders.h"

#include <memory>

class Clock;
class WebKitView;

/// WebKitGTK in this process: its context, its folders, its sandbox. One a process, because GTK
/// and WebKit allow no more; it outlives the views it makes.
class WebKitRuntime {
public:
    /// Sets WebKit up with its storage in `folders.data()`/web and `folders.cache()`/web, created
    /// with mode 0700. Null with a Norwegian sentence in `problem` when there is no display or Qt
    /// does not run on GLib's main loop.
    static std::unique_ptr<WebKitRuntime> start(const Folders& folders, QString& problem);
    ~WebKitRuntime();
    Q_DISABLE_COPY_MOVE(WebKitRuntime)

    /// `clock` must outlive the view.
    std::unique_ptr<WebKitView> makeView(Clock& clock);

    /// Whether web processes are confined; they are where bubblewrap works.
    bool isSandboxed() const;
    /// The engine's version, such as "2.50.6".
    static QString version();

private:
    struct Private;
    explicit WebKitRuntime(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};
