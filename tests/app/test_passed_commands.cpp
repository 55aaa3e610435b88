// SPDX-License-Identifier: MIT
// What another process may ask of the Tindra that runs.
#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "app/ExitCode.h"
#include "app/PassedCommands.h"
#include "app/SignIn.h"
#include "core/Keychain.h"
#include "platform/MemorySecretStore.h"
#include "tests/support/AppWorld.h"
#include "tests/support/FakeHostWindow.h"
#include "tests/support/FakeWebView.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestPassedCommands : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyWhatConcernsTheOneThatRunsIsDone_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QStringList>("done");
        const auto row = [](const char* line, int exitCode, const QStringList& done = {}) {
            QTest::newRow(line) << QString::fromLatin1(line).split(u' ', Qt::SkipEmptyParts)
                                << exitCode << done;
        };
        row("", ExitCode::done, {u"window"_s});
        // Started with the session while it runs already: nobody has asked for the window.
        row("--hidden", ExitCode::done);
        row("watchers pause 1", ExitCode::done, {u"data"_s});
        row("watchers list", ExitCode::wrongUsage);
        row("hits --json", ExitCode::wrongUsage);
        row("backup /tmp/other", ExitCode::wrongUsage);
        row("restore /tmp/other", ExitCode::wrongUsage);
        row("--help", ExitCode::wrongUsage);
        row("fly", ExitCode::wrongUsage);
        row("hunt --once --picture x.png", ExitCode::failed);
    }

    void onlyWhatConcernsTheOneThatRunsIsDone() {
        QFETCH(QStringList, arguments);
        AppWorld world;
        SessionState session;
        FakeWebView view;
        FakeHostWindow hostWindow;
        MemorySecretStore secrets;
        Keychain keychain{secrets};
        Capture capture{view, world.clock, Site{}};
        StandBack standBack{world.database.safekeeping(), world.clock};
        LiveSession live{view,    hostWindow, world.clock, world.database, keychain,
                         session, standBack,  capture,     Site{}};
        SignIn signIn{live.window(), session,      standBack,  world.database.watchers(),
                      world.airline, world.worker, world.clock};
        QStringList done;
        PassedCommands commands([](bool, const Hunt::Output&) { return std::unique_ptr<Hunt>(); },
                                [&done](const DataCommand&) {
                                    done.append(u"data"_s);
                                    return CommandAnswer{};
                                },
                                [&done] {
                                    done.append(u"window"_s);
                                    return QString();
                                },
                                signIn, world.worker, world.clock);
        const auto answer = awaited(commands.run(arguments));
        QVERIFY(answer);
        QTEST(answer->exitCode, "exitCode");
        QTEST(done, "done");
        QCOMPARE(answer->err.isEmpty(), answer->exitCode == ExitCode::done);
    }
};

TINDRA_TEST(TestPassedCommands)
#include "test_passed_commands.moc"
