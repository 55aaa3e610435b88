// SPDX-License-Identifier: MIT
// The only place that creates the long-lived objects and hands them to each other.
#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SASEngine.h"
#include "airline/SessionState.h"
#include "app/CommandLine.h"
#include "app/Demo.h"
#include "app/Hunt.h"
#include "app/SignIn.h"
#include "core/Database.h"
#include "core/Err.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/MemorySecretStore.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/GtkHostWindow.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/UnixSignals.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

void writeLine(std::FILE* stream, const QByteArray& line) {
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

void say(const QString& line) {
    writeLine(stderr, line.toUtf8());
}

/// What is missing is said once, and Tindra goes on without.
void sayAndNote(const QString& line) {
    say(line);
    TDLog::note(line);
}

/// Starts the log first of all, since opening the database may have something to say.
struct Logging {
    Logging(const Folders& folders, const Clock& clock) {
        TDLog::start(folders.data() + u"/ui.log"_s, &clock);
    }
    ~Logging() { TDLog::start({}, nullptr); }
    Q_DISABLE_COPY_MOVE(Logging)
};

std::unique_ptr<Demo> startDemo(const CommandLine& line, const Folders& folders, Database& database,
                                const Clock& clock) {
    if (!line.demo)
        return nullptr;
    if (const auto& problem = database.problem())
        throw Err{*problem};
    const bool signsIn = line.command == CommandLine::Command::signIn;
    auto demo = std::make_unique<Demo>(folders.data(), signsIn);
    Demo::seedWatchers(database, clock.today());
    return demo;
}

std::unique_ptr<SecretStore> openSecrets(const CommandLine& line, Clock& clock) {
    if (line.demo)
        return std::make_unique<MemorySecretStore>();
    return std::make_unique<SecretServiceStore>(clock);
}

std::unique_ptr<WebKitRuntime> startWebKit(const Folders& folders) {
    QString problem;
    auto webKit = WebKitRuntime::start(folders, problem);
    if (!webKit)
        throw Err{problem};
    if (!webKit->isSandboxed())
        sayAndNote(u"Nettleserdelen kjører uten sandkasse: bwrap eller xdg-dbus-proxy virker ikke "
                   u"her. Installer bubblewrap og xdg-dbus-proxy."_s);
    return webKit;
}

/// Everything that lives as long as the program, in the order of its making.
struct Tindra {
    explicit Tindra(const CommandLine& commandLine)
        : line(commandLine)
        , folders(line.demo ? Demo::folderName() : u"Tindra"_s)
        , demo(startDemo(line, folders, database, clock))
        , site(demo ? demo->site()
                    : Site::fromEnvironment(QProcessEnvironment::systemEnvironment()))
        , webKit(startWebKit(folders)) {
        QObject::connect(secrets.get(), &SecretStore::unavailable, sayAndNote);
        QObject::connect(&notifications, &NotificationCenter::unavailable, sayAndNote);
        QObject::connect(
            &state, &SessionState::notice,
            [this](const QString& title, const QString& body) { notifier.post(title, body); });
        engine.setRoundQuestion([this] { return worker.isRunning(); });
        notifier.requestPermission();
    }

    CommandLine line;
    LinuxClock clock;
    LinuxFolders folders;
    Logging logging{folders, clock};
    Database database{folders.data(), clock};
    std::unique_ptr<Demo> demo;
    Site site;
    std::unique_ptr<WebKitRuntime> webKit;
    std::unique_ptr<WebKitView> view = webKit->makeView(clock);
    GtkHostWindow window{
        *view, {SignInWindow::title(), SignInWindow::instruction(), SignInWindow::button()}};
    std::unique_ptr<SecretStore> secrets = openSecrets(line, clock);
    DBusNotifications notifications{QDBusConnection::sessionBus()};
    Keychain keychain{*secrets};
    Notifier notifier{database, notifications, clock};
    SessionState state;
    Capture capture{*view, clock, site};
    LiveSession session{*view, window, clock, database, keychain, state, capture, site};
    SASEngine engine{*view, clock, database, keychain, state, capture, &session};
    Worker worker{database, engine, notifier, clock, site};
    Hunt hunt{database,
              state,
              worker,
              notifications,
              clock,
              line.json,
              {[](const QByteArray& result) { writeLine(stdout, result); }, say}};
};

int hunt(Tindra& tindra) {
    const UnixSignals signalWatch({SIGINT, SIGTERM}, [&tindra] {
        const int code = tindra.line.once ? Hunt::interrupted : Hunt::roundEnded;
        tindra.hunt.stop().then([code] { QCoreApplication::exit(code); });
    });
    std::unique_ptr<SignIn> signIn;
    if (!tindra.line.once)
        signIn = std::make_unique<SignIn>(tindra.session.window(), tindra.state, tindra.database,
                                          tindra.engine, tindra.worker, tindra.clock);
    // From inside the loop: a round without work ends at once, and would end a loop that has not
    // begun.
    QTimer::singleShot(0, &tindra.hunt, [&tindra] {
        if (tindra.line.once)
            tindra.hunt.once().then([](int code) { QCoreApplication::exit(code); });
        else
            tindra.hunt.start();
    });
    return QCoreApplication::exec();
}

int signIn(Tindra& tindra) {
    const UnixSignals signalWatch({SIGINT, SIGTERM},
                                  [] { QCoreApplication::exit(Hunt::interrupted); });
    SignIn signIn(tindra.session.window(), tindra.state, tindra.database, tindra.engine,
                  tindra.worker, tindra.clock);
    QTimer::singleShot(0, &signIn, [&signIn] {
        signIn.run().then([](bool works) {
            writeLine(stdout, works ? "Innlogget hos SAS, bekreftet med et ekte oppslag."
                                    : "Ikke innlogget hos SAS.");
            QCoreApplication::exit(works ? Hunt::roundEnded : Hunt::signedOut);
        });
    });
    return QCoreApplication::exec();
}

int run(const CommandLine& line) {
    switch (line.command) {
    case CommandLine::Command::help:
        writeLine(stdout, CommandLine::helpText().trimmed().toUtf8());
        return 0;
    case CommandLine::Command::version:
        writeLine(stdout, u"tindra %1 (WebKitGTK %2)"_s
                              .arg(QCoreApplication::applicationVersion(), WebKitRuntime::version())
                              .toUtf8());
        return 0;
    case CommandLine::Command::hunt: {
        Tindra tindra(line);
        return hunt(tindra);
    }
    case CommandLine::Command::signIn: {
        Tindra tindra(line);
        return signIn(tindra);
    }
    }
    return Hunt::wrongUsage;
}

/// Everything that Tindra and its web view write is its owner's alone, and no memory with a
/// password in it is ever written as a core dump.
void protectSecrets() {
    ::umask(S_IRWXG | S_IRWXO);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_DUMPABLE, 0);
}

} // namespace

int main(int argc, char* argv[]) {
    protectSecrets();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(TINDRA_VERSION));
    CommandLine line;
    try {
        line = CommandLine::parse(QCoreApplication::arguments().sliced(1));
    } catch (const Err& error) {
        say(u"tindra: "_s + error.message);
        return Hunt::wrongUsage;
    }
    try {
        return run(line);
    } catch (const Err& error) {
        say(u"tindra: "_s + error.message);
        return Hunt::cannotStart;
    }
}
