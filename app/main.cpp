// SPDX-License-Identifier: MIT
// The only place that creates the long-lived objects and hands them to each other.
#include "airline/Capture.h"
#include "airline/SASEngine.h"
#include "airline/SessionState.h"
#include "app/CommandLine.h"
#include "app/Demo.h"
#include "app/Hunt.h"
#include "core/Database.h"
#include "core/Err.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/WebView.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/UnixSignals.h"
#include "platform/linux/WebKitRuntime.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QTimer>

#include <csignal>
#include <cstdio>
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

/// What is missing is said once, and the hunt goes on.
void sayAndNote(const QString& line) {
    say(line);
    TDLog::note(line);
}

int hunt(const CommandLine& line) {
    LinuxClock clock;
    const LinuxFolders folders(line.demo ? Demo::folderName() : u"Tindra"_s);
    // First of all, since opening the database may have something to say.
    TDLog::start(folders.data() + u"/ui.log"_s, &clock);
    Database database(folders.data(), clock);

    std::unique_ptr<Demo> demo;
    if (line.demo) {
        if (const auto& stored = database.problem())
            throw Err{*stored};
        demo = std::make_unique<Demo>(folders.data());
        Demo::seedWatchers(database, clock.today());
    }
    const Site site =
        demo ? demo->site() : Site::fromEnvironment(QProcessEnvironment::systemEnvironment());

    QString problem;
    const auto webKit = WebKitRuntime::start(folders, problem);
    if (!webKit)
        throw Err{problem};
    if (!webKit->isSandboxed())
        sayAndNote(u"Nettleserdelen kjører uten sandkasse: bwrap eller xdg-dbus-proxy virker ikke "
                   u"her. Installer bubblewrap og xdg-dbus-proxy."_s);
    const auto view = webKit->makeView();

    SecretServiceStore secrets(clock);
    QObject::connect(&secrets, &SecretStore::unavailable, sayAndNote);
    DBusNotifications notifications(QDBusConnection::sessionBus());
    QObject::connect(&notifications, &NotificationCenter::unavailable, sayAndNote);

    Keychain keychain(secrets);
    Notifier notifier(database, notifications, clock);
    notifier.requestPermission();
    SessionState session;
    QObject::connect(
        &session, &SessionState::notice,
        [&notifier](const QString& title, const QString& body) { notifier.post(title, body); });
    Capture capture(*view, clock, site);
    SASEngine engine(*view, clock, database, keychain, session, capture, nullptr);
    Worker worker(database, engine, notifier, clock, site);
    engine.setRoundQuestion([&worker] { return worker.isRunning(); });

    Hunt hunt(database, session, worker, notifications, clock, line.json,
              {[](const QByteArray& result) { writeLine(stdout, result); }, say});
    const UnixSignals signalWatch({SIGINT, SIGTERM}, [&hunt, &line] {
        hunt.stop().then([code = line.once ? Hunt::interrupted : Hunt::roundEnded] {
            QCoreApplication::exit(code);
        });
    });
    // From inside the loop: a round without work ends at once, and would end a loop that has not
    // begun.
    QTimer::singleShot(0, &hunt, [&hunt, &line] {
        if (line.once)
            hunt.once().then([](int code) { QCoreApplication::exit(code); });
        else
            hunt.start();
    });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char* argv[]) {
    // Everything that Tindra and its web view write is its owner's alone.
    ::umask(S_IRWXG | S_IRWXO);
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(TINDRA_VERSION));
    try {
        const auto line = CommandLine::parse(QCoreApplication::arguments().sliced(1));
        switch (line.command) {
        case CommandLine::Command::help:
            writeLine(stdout, CommandLine::helpText().trimmed().toUtf8());
            return 0;
        case CommandLine::Command::version:
            writeLine(stdout,
                      u"tindra %1 (WebKitGTK %2)"_s
                          .arg(QCoreApplication::applicationVersion(), WebKitRuntime::version())
                          .toUtf8());
            return 0;
        case CommandLine::Command::hunt:
            break;
        }
        try {
            return hunt(line);
        } catch (const Err& error) {
            say(u"tindra: "_s + error.message);
            return Hunt::cannotStart;
        }
    } catch (const Err& error) {
        say(u"tindra: "_s + error.message);
        return Hunt::wrongUsage;
    }
}
