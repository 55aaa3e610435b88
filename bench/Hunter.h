// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SASEngine.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "app/AppState.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "platform/linux/CurlSession.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/GtkHostWindow.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "sharing/Community.h"
#include "sharing/OthersFinds.h"
#include "sharing/Sharing.h"
#include "standin/StandIn.h"

#include <QEventLoop>
#include <QTimer>

#include <functional>
#include <memory>

/// The web engine of this process, which may have one only. It goes with the application.
WebKitRuntime& webKit();

/// The task's value; the program ends when there is none in time.
template<typename T>
T ended(QCoro::Task<T> task, std::chrono::milliseconds patience = std::chrono::minutes(5)) {
    // Shared with the task, which may go on when the patience is over.
    const auto result = std::make_shared<std::optional<T>>();
    const auto loop = std::make_shared<QEventLoop>();
    task.then([result, loop](T value) {
        *result = std::move(value);
        loop->quit();
    });
    QTimer::singleShot(patience, loop.get(), &QEventLoop::quit);
    if (!*result)
        loop->exec();
    if (!*result)
        qFatal("a task does not end");
    return std::move(**result);
}
void ended(QCoro::Task<> task);

/// All of Tindra that hunts, without a window: made in the order of `program/Tindra.h`, in a data
/// folder of its own and with the machine's clock.
struct Hunter {
    /// Sees the view before anything listens to it.
    using Beginning = std::function<void(WebView&)>;

    /// The browser has no cookies. `airline` must have been started.
    Hunter(const QString& folder, const standin::StandIn& airline, const Beginning& beginning = {});
    ~Hunter();
    Q_DISABLE_COPY_MOVE(Hunter)

    /// A watcher of all cabins from Oslo to London on so many days from `first` on.
    void watch(QDate first, int days);
    PollSummary round() { return ended(worker.pollOnce()); }

    LinuxClock clock;
    Database database;
    Site site;
    std::unique_ptr<WebKitView> view;
    GtkHostWindow window;
    SecretServiceStore secrets{clock};
    DBusNotifications notifications;
    Keychain keychain{secrets};
    Notifier notifier{database, notifications, clock};
    SessionState state;
    StandBack standBack{database.safekeeping(), clock};
    Capture capture{*view, clock, site};
    LiveSession session{*view, window, clock, database, keychain, state, standBack, capture, site};
    SASEngine engine{*view,    clock,   database.settings(),
                     keychain, state,   standBack,
                     capture,  session, [this] { return worker.isRunning(); }};
    Worker worker{database, engine, notifier, clock};
    CurlSession network;
    Community community;
    OthersFinds finds{database, community, notifier, clock};
    AppState appState{database, worker, finds, clock};
    Sharing sharing{worker, community, finds, clock};
};

/// The stand-in's name of a leg from Oslo to London.
QString legKey(QDate date);
/// When the stand-in's socket took the last byte of that leg's answer. Its thread may be busy with
/// the next one when it should note that, so this waits for it; the program ends when it never
/// does.
std::chrono::steady_clock::time_point answeredAt(const standin::StandIn& airline, QDate date);
