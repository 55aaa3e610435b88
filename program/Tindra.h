// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SASEngine.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "app/AppState.h"
#include "app/CommandLine.h"
#include "app/Demo.h"
#include "app/DemoHunters.h"
#include "app/Hunt.h"
#include "app/SignIn.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "platform/linux/CurlSession.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/GtkHostWindow.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "program/Logging.h"
#include "sharing/Community.h"
#include "sharing/OthersFinds.h"
#include "sharing/Sharing.h"

#include <memory>

/// Everything that hunts, for as long as the program runs, in the order of its making.
struct Tindra {
    /// Throws Err when it cannot start. `folders` and `clock` must outlive it.
    Tindra(const CommandLine& line, const Folders& folders, Clock& clock);
    ~Tindra();
    Q_DISABLE_COPY_MOVE(Tindra)

    /// The user does not want to wait until the airline may be asked again.
    void tryNow();

    std::unique_ptr<Hunt> makeHunt(bool json, const Hunt::Output& output);

    CommandLine line;
    Clock& clock;
    const Folders& folders;
    Logging logging;
    Database database;
    std::unique_ptr<Demo> demo;
    Site site;
    std::unique_ptr<WebKitRuntime> webKit;
    std::unique_ptr<WebKitView> view;
    GtkHostWindow window;
    std::unique_ptr<SecretStore> secrets;
    DBusNotifications notifications;
    Keychain keychain{*secrets};
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
    SignIn signIn{session.window(), state, standBack, database.watchers(), engine, worker, clock};
    std::unique_ptr<DemoHunters> hunters;
};
