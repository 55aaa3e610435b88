// SPDX-License-Identifier: MIT
// The only place, with its neighbours in this folder, that creates the long-lived objects and hands
// them to each other.
#include "TindraVersion.h"
#include "app/ExitCode.h"
#include "app/PassedCommands.h"
#include "app/commands/DataCommand.h"
#include "core/Cabin.h"
#include "core/DateFmt.h"
#include "core/Err.h"
#include "platform/Bundle.h"
#include "platform/linux/DBusInstance.h"
#include "platform/linux/GraphicsHardware.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/UnixSignals.h"
#include "program/Output.h"
#include "program/Tindra.h"
#include "program/WindowPicture.h"
#include "program/WindowProgram.h"
#include "ui/controls/Controls.h"

#include <QApplication>
#include <QProcessEnvironment>
#include <QQuickWindow>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// What later starts may ask of this one; `showWindow` brings the window to the front, or says why
/// there is none.
std::unique_ptr<PassedCommands> passedCommands(Tindra& tindra,
                                               std::function<QString()> showWindow) {
    return std::make_unique<PassedCommands>(
        [&tindra](bool json, const Hunt::Output& output) { return tindra.makeHunt(json, output); },
        [&tindra](const DataCommand& command) {
            return run(command, {tindra.database, tindra.clock, tindra.site});
        },
        std::move(showWindow), tindra.signIn, tindra.worker, tindra.clock);
}

/// `picture` may be absent.
QCoro::Task<> huntOnce(Tindra& tindra, Hunt& hunt, WindowPicture* picture) {
    int code = co_await hunt.once();
    // A keychain that nobody unlocks must not keep the program.
    co_await tindra.session.saved(std::chrono::seconds(5));
    if (picture) {
        const bool isSaved = co_await picture->save();
        if (!isSaved && code == ExitCode::done)
            code = ExitCode::failed;
    }
    QCoreApplication::exit(code);
}

int hunt(Tindra& tindra, Instance& instance) {
    const auto picture = tindra.line.picture.isEmpty()
                             ? nullptr
                             : std::make_unique<WindowPicture>(tindra, tindra.line.picture);
    const auto hunt = tindra.makeHunt(tindra.line.json, {writeResult, say});
    const UnixSignals signalWatch({SIGINT, SIGTERM, SIGHUP}, [&] {
        const int code = tindra.line.once ? ExitCode::interrupted : ExitCode::done;
        hunt->stop().then([code] { QCoreApplication::exit(code); });
    });
    const auto passed = passedCommands(tindra, [] {
        return u"Tindra jakter uten vindu. Avslutt den først, eller bruk «tindra hits»."_s;
    });
    QObject::connect(&tindra.finds, &OthersFinds::found, hunt.get(), [](const Match& find) {
        say(u"  👥 %1 %2, %3 %4"_s.arg(DateFmt::iso(find.travelDate()), find.route().text(),
                                       QString::number(find.seats), label(find.cabin)));
    });
    // From inside the loop: a round without work ends at once, and would end a loop that has not
    // begun.
    QTimer::singleShot(0, hunt.get(), [&] {
        if (tindra.line.once) {
            huntOnce(tindra, *hunt, picture.get());
            return;
        }
        if (picture)
            QObject::connect(&tindra.worker, &Worker::roundEnded, picture.get(),
                             [&picture] { picture->save(); });
        instance.serve([&passed](QStringList arguments) { return passed->run(arguments); });
        hunt->start();
    });
    return QCoreApplication::exec();
}

int window(Tindra& tindra, Instance& instance) {
    WindowProgram program(tindra);
    const auto quit = [] { QCoreApplication::exit(ExitCode::done); };
    const UnixSignals signalWatch({SIGINT, SIGTERM, SIGHUP}, quit);
    QObject::connect(&program, &WindowProgram::quitRequested, &program, quit);
    const auto passed = passedCommands(tindra, [&program] {
        program.activate();
        return QString();
    });
    instance.serve([&passed](QStringList arguments) { return passed->run(arguments); });
    if (!tindra.line.demo)
        instance.answerDesktop([&program] { program.activate(); },
                               [&tindra] { tindra.worker.pollOnce(); });
    program.start();
    return QCoreApplication::exec();
}

int signIn(Tindra& tindra) {
    const UnixSignals signalWatch({SIGINT, SIGTERM, SIGHUP},
                                  [] { QCoreApplication::exit(ExitCode::interrupted); });
    QTimer::singleShot(0, &tindra.signIn, [&tindra] {
        tindra.signIn.run().then([](bool works) {
            writeResult((works ? SignIn::confirmedText() : SignIn::failedText()).toUtf8());
            QCoreApplication::exit(works ? ExitCode::done : ExitCode::signedOut);
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
        Demo::seedWatchers(database.watchers(), clock.today());
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
        writeResult(CommandLine::helpText().trimmed().toUtf8());
        return 0;
    }
    if (line.command == Command::version) {
        writeResult(u"tindra %1 (WebKitGTK %2)"_s
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
    LinuxClock clock;
    Tindra tindra(line, folders, clock);
    if (line.command == Command::window)
        return window(tindra, instance);
    return line.command == Command::hunt ? hunt(tindra, instance) : signIn(tindra);
}

/// Everything that Tindra and its web view write is its owner's alone, and no memory with a
/// password in it is ever written as a core dump.
void protectSecrets() {
    ::umask(S_IRWXG | S_IRWXO);
    // One byte is too little for any dump, and the one limit that also holds where dumps are piped
    // to a program. The desktop's portals answer only those whose /proc they can read, so that a
    // process that hides from dumps altogether would be without them.
    const rlimit none{1, 1};
    ::setrlimit(RLIMIT_CORE, &none);
}

/// Without graphics hardware Qt neither draws by OpenGL nor loads it. A renderer that the user has
/// chosen comes first.
void chooseRenderer() {
    if (!qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") ||
        !qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND") || hasGraphicsHardware())
        return;
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    if (qEnvironmentVariableIsEmpty("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
}

/// The window needs more of Qt than the commands, which also run without a display.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv, const CommandLine& line) {
    const bool isWindow = line.command == CommandLine::Command::window;
    if (!isWindow && line.picture.isEmpty())
        return std::make_unique<QCoreApplication>(argc, argv);
    if (!isWindow)
        WindowPicture::prepare();
    else if (qEnvironmentVariableIsEmpty("DISPLAY") &&
             qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        throw Err{u"Det er ingen skjerm her. Bruk «tindra hunt», eller start med xvfb-run."_s};
    prepareInterface();
    chooseRenderer();
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // Desktops know by these which launcher the window belongs to, on Wayland and on X11.
    QGuiApplication::setDesktopFileName(QStringLiteral(TINDRA_BUNDLE_ID));
    QCoreApplication::setApplicationName(QStringLiteral(TINDRA_WINDOW_CLASS));
    return application;
}

} // namespace

int main(int argc, char* argv[]) {
    protectSecrets();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    CommandLine line;
    try {
        line = CommandLine::parse(arguments);
    } catch (const Err& error) {
        say(u"tindra: "_s + error.message);
        return ExitCode::wrongUsage;
    }
    try {
        const auto application = makeApplication(argc, argv, line);
        QCoreApplication::setApplicationVersion(QStringLiteral(TINDRA_VERSION));
        return run(line);
    } catch (const Err& error) {
        say(u"tindra: "_s + error.message);
        return ExitCode::failed;
    }
}
