// SPDX-License-Identifier: MIT
// The only place that creates the long-lived objects and hands them to each other.
#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SASEngine.h"
#include "airline/SessionState.h"
#include "app/AppState.h"
#include "app/CommandLine.h"
#include "app/Demo.h"
#include "app/DemoHunters.h"
#include "app/EngineAge.h"
#include "app/Hunt.h"
#include "app/PassedCommands.h"
#include "app/Sharing.h"
#include "app/SignIn.h"
#include "app/commands/DataCommand.h"
#include "core/Cabin.h"
#include "core/Database.h"
#include "core/Err.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/MemorySecretStore.h"
#include "platform/linux/DBusInstance.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/GtkHostWindow.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/NetworkSession.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/UnixSignals.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "polling/Community.h"
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

/// Everything that lives as long as the program, in the order of its making.
struct Tindra {
    Tindra(const CommandLine& commandLine, const Folders& itsFolders)
        : line(commandLine)
        , folders(itsFolders)
        , demo(startDemo(line, folders, database, clock))
        , site(demo ? demo->site()
                    : Site::fromEnvironment(QProcessEnvironment::systemEnvironment()))
        , webKit(startWebKit(folders, clock)) {
        QObject::connect(secrets.get(), &SecretStore::unavailable, sayAndNote);
        QObject::connect(&notifications, &NotificationCenter::unavailable, sayAndNote);
        QObject::connect(
            &state, &SessionState::notice,
            [this](const QString& title, const QString& body) { notifier.post(title, body); });
        // Each process makes one soon after its start, and one that runs for long every day.
        QObject::connect(&worker, &Worker::stored, &worker, [this] { database.keepDailyCopy(); });
        engine.setRoundQuestion([this] { return worker.isRunning(); });
        notifier.requestPermission();
        // With a service of their own choice, people are among real hunters.
        if (demo && communityBase(demo.get()) == demo->community()) {
            hunters = std::make_unique<DemoHunters>(community, clock, site);
            hunters->start();
        }
    }

    CommandLine line;
    LinuxClock clock;
    const Folders& folders;
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
    NetworkSession network{clock};
    Community community{database, network, clock, communityBase(demo.get())};
    AppState appState{database, worker, community, notifier, clock};
    Sharing sharing{worker, community, appState, clock};
    SignIn signIn{session.window(), state, database, engine, worker, clock};

    std::unique_ptr<DemoHunters> hunters;

    std::unique_ptr<Hunt> makeHunt(bool json, const Hunt::Output& output) {
        return std::make_unique<Hunt>(database, state, worker, sharing, notifications, clock, json,
                                      output);
    }
};

int hunt(Tindra& tindra, Instance& instance) {
    const auto hunt = tindra.makeHunt(
        tindra.line.json, {[](const QByteArray& result) { writeLine(stdout, result); }, say});
    const UnixSignals signalWatch({SIGINT, SIGTERM, SIGHUP}, [&] {
        const int code = tindra.line.once ? Hunt::interrupted : Hunt::roundEnded;
        hunt->stop().then([code] { QCoreApplication::exit(code); });
    });
    PassedCommands passed(
        [&tindra](bool json, const Hunt::Output& output) { return tindra.makeHunt(json, output); },
        [&tindra](const DataCommand& command) {
            const CommandAnswer answer = run(command, {tindra.database, tindra.clock, tindra.site});
            tindra.appState.reload();
            return answer;
        },
        tindra.signIn, tindra.worker, tindra.clock);
    QObject::connect(
        &tindra.appState, &AppState::communityFound, hunt.get(), [](const Match& find) {
            say(u"  👥 %1 %2, %3 %4"_s.arg(find.travelDate, find.route, QString::number(find.seats),
                                           cabinLabel(find.cabin)));
        });
    // From inside the loop: a round without work ends at once, and would end a loop that has not
    // begun.
    QTimer::singleShot(0, hunt.get(), [&] {
        if (tindra.line.once) {
            hunt->once().then([](int code) { QCoreApplication::exit(code); });
            return;
        }
        instance.serve([&passed](QStringList arguments) { return passed.run(arguments); });
        hunt->start();
    });
    return QCoreApplication::exec();
}

int signIn(Tindra& tindra) {
    const UnixSignals signalWatch({SIGINT, SIGTERM, SIGHUP},
                                  [] { QCoreApplication::exit(Hunt::interrupted); });
    QTimer::singleShot(0, &tindra.signIn, [&tindra] {
        tindra.signIn.run().then([](bool works) {
            writeLine(stdout, (works ? SignIn::confirmedText() : SignIn::failedText()).toUtf8());
            QCoreApplication::exit(works ? Hunt::roundEnded : Hunt::signedOut);
        });
    });
    return QCoreApplication::exec();
}

int print(const CommandAnswer& answer) {
    std::fputs(answer.err.toUtf8().constData(), stderr);
    std::fwrite(answer.out.constData(), 1, static_cast<size_t>(answer.out.size()), stdout);
    return answer.exitCode;
}

/// Lets the Tindra that has the data folder do the work; absent when it does not take it.
std::optional<CommandAnswer> passOn(Instance& instance) {
    std::optional<CommandAnswer> answer;
    QTimer::singleShot(0, [&] {
        instance.pass(QCoreApplication::arguments().sliced(1)).then([&answer](const auto& given) {
            answer = given;
            QCoreApplication::quit();
        });
    });
    const UnixSignals signalWatch({SIGINT, SIGTERM, SIGHUP}, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    return answer;
}

/// A change is for the Tindra that runs, so that it notices. One that takes no commands, such as a
/// single round, reads the watchers afresh anyway.
int runData(const CommandLine& line, const Folders& folders, Instance& instance) {
    if (!instance.isFirst() && changesData(*line.data)) {
        if (const auto answer = passOn(instance))
            return print(*answer);
    }
    const LinuxClock clock;
    const Logging logging(folders, clock);
    Database database(folders.data(), clock,
                      instance.isFirst() ? Database::Access::owner : Database::Access::guest);
    if (line.demo && instance.isFirst())
        Demo::seedWatchers(database, clock.today());
    return print(
        run(*line.data,
            {database, clock, Site::fromEnvironment(QProcessEnvironment::systemEnvironment())}));
}

int restore(const CommandLine& line, const Folders& folders, Instance& instance) {
    if (!instance.isFirst())
        throw Err{u"Tindra kjører. Avslutt den før du henter inn en sikkerhetskopi."_s};
    const LinuxClock clock;
    const Logging logging(folders, clock);
    return print(line.restore.run(folders.data(), clock));
}

int run(const CommandLine& line) {
    using Command = CommandLine::Command;
    if (line.command == Command::help) {
        writeLine(stdout, CommandLine::helpText().trimmed().toUtf8());
        return 0;
    }
    if (line.command == Command::version) {
        writeLine(stdout, u"tindra %1 (WebKitGTK %2)"_s
                              .arg(QCoreApplication::applicationVersion(), WebKitRuntime::version())
                              .toUtf8());
        return 0;
    }
    const LinuxFolders folders(line.demo ? Demo::folderName() : u"Tindra"_s);
    DBusInstance instance(folders.data(), QDBusConnection::sessionBus());
    if (line.command == Command::data)
        return runData(line, folders, instance);
    if (line.command == Command::restore)
        return restore(line, folders, instance);
    if (!instance.isFirst()) {
        say(u"Tindra kjører allerede, og tar seg av det."_s);
        if (const auto answer = passOn(instance))
            return print(*answer);
        throw Err{u"Tindra som kjører, tok ikke imot kommandoen. Vent til den er ferdig, eller "
                  u"avslutt den."_s};
    }
    Tindra tindra(line, folders);
    return line.command == Command::hunt ? hunt(tindra, instance) : signIn(tindra);
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
