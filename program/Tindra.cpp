// SPDX-License-Identifier: MIT
#include "program/Tindra.h"

#include "app/EngineAge.h"
#include "core/Err.h"
#include "core/TDLog.h"
#include "platform/MemorySecretStore.h"
#include "platform/linux/SecretServiceStore.h"
#include "program/Output.h"

#include <QProcessEnvironment>

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<Demo> startDemo(const CommandLine& line, const Folders& folders, Database& database,
                                const Clock& clock) {
    if (!line.demo)
        return nullptr;
    if (const auto& problem = database.problem())
        throw Err{*problem};
    const bool signsIn = line.command == CommandLine::Command::signIn;
    auto demo = std::make_unique<Demo>(folders.data(), signsIn, clock);
    Demo::seedWatchers(database.watchers(), clock.today());
    return demo;
}

/// A stand-in that runs elsewhere (TINDRA_SITE_ORIGIN) comes before the demo's own.
Site chooseSite(const Demo* demo) {
    return demo && qEnvironmentVariableIsEmpty("TINDRA_SITE_ORIGIN")
               ? demo->site()
               : Site::fromEnvironment(QProcessEnvironment::systemEnvironment());
}

/// TINDRA_COMMUNITY_URL comes before the demo's own service and the build's address.
QString communityBase(const Demo* demo) {
    const QString own = qEnvironmentVariable("TINDRA_COMMUNITY_URL");
    if (!own.isEmpty())
        return own;
    return demo ? demo->community() : Community::builtInBaseAddress();
}

std::unique_ptr<SecretStore> openSecrets(const CommandLine& line, Clock& clock) {
    if (line.demo)
        return std::make_unique<MemorySecretStore>();
    return std::make_unique<SecretServiceStore>(clock);
}

std::unique_ptr<WebKitRuntime> startWebKit(const Folders& folders, const Clock& clock) {
    QString problem;
    auto webKit = WebKitRuntime::start(folders, problem);
    if (!webKit)
        throw Err{problem};
    if (!webKit->isSandboxed())
        sayAndNote(u"Nettleserdelen kjører uten sandkasse: bwrap eller xdg-dbus-proxy virker ikke "
                   u"her. Installer bubblewrap og xdg-dbus-proxy."_s);
    if (const auto warning = EngineAge::warning(WebKitRuntime::version(), clock.today()))
        TDLog::note(*warning);
    return webKit;
}

} // namespace

Tindra::Tindra(const CommandLine& itsLine, const Folders& itsFolders, Clock& itsClock)
    : line(itsLine)
    , clock(itsClock)
    , folders(itsFolders)
    , logging(folders, clock)
    , database(folders.data(), clock)
    , demo(startDemo(line, folders, database, clock))
    , site(chooseSite(demo.get()))
    , webKit(startWebKit(folders, clock))
    , view(webKit->makeView(clock))
    , window(*view, {SignInWindow::title(), SignInWindow::instruction(), SignInWindow::button()})
    , secrets(openSecrets(line, clock))
    , notifications(QDBusConnection::sessionBus())
    , community(database.settings(), network, clock, site, communityBase(demo.get())) {
    QObject::connect(secrets.get(), &SecretStore::unavailable, sayAndNote);
    QObject::connect(&notifications, &NotificationCenter::unavailable, sayAndNote);
    QObject::connect(&state, &SessionState::signedOut, &notifier, &Notifier::notifySignedOut);
    // Each process makes one soon after its start, and one that runs for long every day.
    QObject::connect(&worker, &Worker::idle, &worker, [this] { database.keepDailyCopy(); });
    QObject::connect(&notifications, &NotificationCenter::appeared, &notifier, &Notifier::tellRest);
    notifier.requestPermission();
    // With a service of their own choice, people are among real hunters.
    if (demo && communityBase(demo.get()) == demo->community()) {
        hunters = std::make_unique<DemoHunters>(community, database.watchers(), clock, site);
        hunters->start();
    }
}

Tindra::~Tindra() = default;

void Tindra::tryNow() {
    standBack.lift();
    worker.pollOnce();
}

std::unique_ptr<Hunt> Tindra::makeHunt(bool json, const Hunt::Output& output) {
    return std::make_unique<Hunt>(database, state, worker, sharing, notifications, clock, json,
                                  output);
}
