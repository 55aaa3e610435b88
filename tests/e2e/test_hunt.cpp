// SPDX-License-Identifier: MIT
// The program itself, started as a user would.
#include "TindraVersion.h"
#include "app/HuntReport.h"
#include "core/Database.h"
#include "standin/StandIn.h"
#include "tests/support/ManualClock.h"
#include "tests/support/NotificationService.h"
#include "tests/support/RawSql.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

class TestHunt : public QObject {
    Q_OBJECT

public:
    explicit TestHunt(TestBus& bus) : m_bus(bus) {}

private:
    TestBus& m_bus;
    QString m_folder;

    struct Result {
        int code = -1;
        QString out;
        QString err;
    };

    std::unique_ptr<QProcess> start(const QStringList& arguments,
                                    const QMap<QString, QString>& variables = {}) {
        auto program = std::make_unique<QProcess>();
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, m_folder + u"/data"_s);
        environment.insert(u"XDG_CACHE_HOME"_s, m_folder + u"/cache"_s);
        for (auto variable = variables.begin(); variable != variables.end(); ++variable)
            environment.insert(variable.key(), *variable);
        program->setProcessEnvironment(environment);
        program->start(builtProgram(u"tindra"_s), arguments);
        return program;
    }
    Result run(const QStringList& arguments, const QMap<QString, QString>& variables = {}) {
        const auto program = start(arguments, variables);
        // The stand-in and the desktop of a test answer meanwhile.
        if (!QTest::qWaitFor([&] { return program->state() == QProcess::NotRunning; }, 90000))
            program->kill();
        program->waitForFinished();
        return {program->exitStatus() == QProcess::NormalExit ? program->exitCode() : -1,
                QString::fromUtf8(program->readAllStandardOutput()),
                QString::fromUtf8(program->readAllStandardError())};
    }
    static QMap<QString, QString> settingsOf(const standin::StandIn& airline) {
        return {{u"TINDRA_SITE_ORIGIN"_s, airline.siteOrigin()},
                {u"TINDRA_SITE_DOMAIN"_s, airline.siteDomain()},
                {u"TINDRA_IDP_HOST"_s, airline.idpHost()},
                {u"TINDRA_IDP_DOMAIN"_s, airline.idpDomain()}};
    }
    /// Pixels of the grounds that seats and points stand on, which nothing else has.
    static qsizetype greenPixels(const QString& file) {
        const QImage picture(file);
        qsizetype count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor colour = picture.pixelColor(x, y);
                count += colour.green() > colour.red() + 8 && colour.green() > colour.blue() + 4;
            }
        }
        return picture.size() == QSize(1120, 880) ? count : -1;
    }
    static QJsonObject json(const Result& result) {
        return QJsonDocument::fromJson(result.out.toUtf8()).object();
    }

private Q_SLOTS:
    void init() {
        static int number = 0;
        m_folder = m_bus.home() + u"/run%1"_s.arg(++number);
        QDir().mkpath(m_folder);
    }

    void theDemoFindsAndTheNextRoundTellsWhatChanged() {
        NotificationService desktop({u"body"_s});
        const Result first = run({u"hunt"_s, u"--demo"_s, u"--once"_s, u"--json"_s});
        QVERIFY2(first.code == 0, qPrintable(first.err));
        QVERIFY(first.err.contains(u"[1/3] Sjekker Bangkok i business — CPH→BKK (1 av 10)"_s));
        QVERIFY(!json(first)[u"new"].toArray().isEmpty());
        QVERIFY(json(first)[u"soldOut"].toArray().isEmpty());
        QCOMPARE(json(first)[u"summary"][u"searches"].toInt(), 3);
        // All were handed to the desktop before the program ended.
        // One more comes from the demo's other hunters.
        const auto isOthers = [](const auto& shown) {
            return shown.summary.contains(u"Fellesskapet");
        };
        QCOMPARE(std::count_if(desktop.received.begin(), desktop.received.end(), isOthers), 1);
        QCOMPARE(desktop.received.size(), json(first)[u"new"].toArray().size() + 1);
        QVERIFY(first.err.contains(u"👥"));

        const Result second = run({u"hunt"_s, u"--demo"_s, u"--once"_s, u"--json"_s});
        QCOMPARE(second.code, 0);
        QVERIFY(!json(second)[u"new"].toArray().isEmpty());
        QVERIFY(!json(second)[u"soldOut"].toArray().isEmpty());

        const QString found = m_folder + u"/found.png"_s;
        const Result third = run({u"hunt"_s, u"--once"_s, u"--demo"_s, u"--picture"_s, found});
        QVERIFY(third.out.startsWith(u"Runden er ferdig: 3 overvåkere"_s));
        // The user's own data is not touched.
        QCOMPARE(QDir(m_folder + u"/data"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList{u"Tindra-demo"_s});

        QVERIFY2(third.err.contains(found), qPrintable(third.err));
        QVERIFY2(greenPixels(found) > 5000, QByteArray::number(greenPixels(found)));
        const QString nothing = m_folder + u"/nothing.png"_s;
        QCOMPARE(run({u"hunt"_s, u"--once"_s, u"--picture"_s, nothing}).code, 0);
        QVERIFY2(greenPixels(nothing) >= 0 && greenPixels(nothing) < 500,
                 QByteArray::number(greenPixels(nothing)));
        const Result nowhere = run({u"hunt"_s, u"--picture"_s, m_folder + u"/no/p.png"_s});
        QCOMPARE(nowhere.code, 1);
        QVERIFY2(nowhere.err.contains(u"/no/p.png"_s), qPrintable(nowhere.err));
    }

    void exitCodesTellHowItWent() {
        ManualClock clock(QDate::currentDate());
        Database database(m_folder + u"/data/Tindra"_s, clock);
        Search search;
        search.origin = u"OSL"_s;
        search.destination = u"CPH"_s;
        search.dateFrom = clock.today().addDays(30);
        database.watchers().addSearch(search);
        search.dateFrom = QDate();
        database.watchers().addSearch(search);
        standin::StandIn airline({});
        QVERIFY(!airline.start());
        const auto site = settingsOf(airline);
        const Result failed = run({u"hunt"_s, u"--once"_s, u"--json"_s}, site);
        QVERIFY2(failed.code == 3, qPrintable(failed.err));
        QCOMPARE(json(failed)[u"summary"][u"errors"][0].toString(),
                 u"søk 2: SAS-søk krever avreisedato."_s);
        // Nobody answers notifications on this bus; that is said once.
        QCOMPARE(failed.err.count(u"Varsler kan ikke vises"_s), 1);

        QCOMPARE(run({u"hunt"_s, u"--twice"_s}).code, 2);
        QCOMPARE(run({u"--once"_s}).code, 2);
        const Result help = run({u"--help"_s});
        QCOMPARE(help.code, 0);
        QVERIFY(help.out.contains(u"tindra hunt"_s));
        QVERIFY(run({u"--version"_s}).out.startsWith(u"tindra "_s TINDRA_VERSION));
    }

    void whatIsMissingIsSaid() {
        const Result noDisplay =
            run({u"hunt"_s, u"--once"_s}, {{u"DISPLAY"_s, u""_s}, {u"WAYLAND_DISPLAY"_s, u""_s}});
        QCOMPARE(noDisplay.code, 1);
        QVERIFY(noDisplay.err.contains(u"xvfb-run"_s));
        QCOMPARE(noDisplay.err.trimmed().count(u'\n'), 0);

        const Result noGLib = run({u"hunt"_s, u"--once"_s}, {{u"QT_NO_GLIB"_s, u"1"_s}});
        QCOMPARE(noGLib.code, 1);
        QVERIFY(noGLib.err.contains(u"QT_NO_GLIB"_s));

        const Result noSite = run({u"hunt"_s, u"--once"_s}, {{u"TINDRA_SITE_ORIGIN"_s, u"sas"_s}});
        QCOMPARE(noSite.code, 1);
        QVERIFY(noSite.err.contains(u"TINDRA_SITE_ORIGIN"_s));

        const Result nothingToDo = run({u"hunt"_s, u"--once"_s},
                                       {{u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s}});
        QCOMPARE(nothingToDo.code, 0);
        QVERIFY(nothingToDo.err.contains(u"Ingen aktive overvåkere"_s));
        QCOMPARE(nothingToDo.err.count(u"Varsler kan ikke vises: ingen D-Bus-økt"_s), 1);

        QVERIFY(QDir(m_folder + u"/data/Tindra"_s).removeRecursively());
        QFile inTheWay(m_folder + u"/data/Tindra"_s);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        const Result noStore = run({u"hunt"_s, u"--once"_s});
        QCOMPARE(noStore.code, 0);
        QCOMPARE(noStore.err.count(u"tindra.sqlite kan ikke brukes"_s), 1);
        QVERIFY(!noStore.err.contains(u"Ingen aktive overvåkere"_s));

        QVERIFY(inTheWay.remove());
        QVERIFY(QDir().mkpath(m_folder + u"/data/Tindra/tindra.sqlite"_s));
        QCOMPARE(run({u"hunt"_s, u"--once"_s}).code, 0);
        QFile log(m_folder + u"/data/Tindra/ui.log"_s);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QCOMPARE(log.readAll().count("tindra.sqlite kan ikke brukes"), 1);
    }

    void aLaterStartLetsTheFirstDoTheWork() {
        // The demo's own airline would ask to be left alone in the second round.
        standin::StandIn airline({});
        QVERIFY(!airline.start());
        const auto first = start({u"hunt"_s, u"--demo"_s}, settingsOf(airline));
        QByteArray err;
        QVERIFY(QTest::qWaitFor(
            [&] { return (err += first->readAllStandardError()).contains("(2 av 10)"); }, 60000));
        const Result passed = run({u"hunt"_s, u"--demo"_s, u"--once"_s, u"--json"_s});
        QVERIFY2(passed.code == 0, qPrintable(passed.err));
        QVERIFY(passed.err.startsWith(u"Tindra kjører allerede"_s));
        // A round of its own, after the one that was under way.
        QVERIFY(!json(passed)[u"soldOut"].toArray().isEmpty());
        const QByteArray out = first->readAllStandardOutput();
        QCOMPARE(out.count("Runden er ferdig"), 2);

        // One that is cut off ends the wait of the other, and leaves whole what is stored.
        const auto second = start({u"hunt"_s, u"--demo"_s, u"--once"_s});
        QVERIFY(QTest::qWaitFor(
            [&] { return (err += first->readAllStandardError()).count("(2 av 10)") == 3; }, 60000));
        first->terminate();
        QVERIFY(first->waitForFinished(10000));
        QCOMPARE(first->exitCode(), 0);
        QVERIFY(QTest::qWaitFor([&] { return second->state() == QProcess::NotRunning; }, 10000));
        QCOMPARE(second->exitCode(), 1);
        QVERIFY(second->readAllStandardError().contains("tok ikke imot"));
        runOn(m_folder + u"/data/Tindra-demo"_s,
              "CREATE TEMP TABLE report (line CHECK (line = 'ok')); "
              "INSERT INTO report SELECT integrity_check FROM pragma_integrity_check WHERE schema "
              "= 'main';");
    }

    void anInterruptedRoundIsNotAnEndedOne() {
        const auto program = start({u"hunt"_s, u"--demo"_s, u"--once"_s, u"--json"_s});
        QByteArray err;
        QVERIFY(QTest::qWaitFor(
            [&] {
                err += program->readAllStandardError();
                return err.contains("(2 av 10)");
            },
            60000));
        ::kill(static_cast<pid_t>(program->processId()), SIGTERM);
        QVERIFY(program->waitForFinished(10000));
        QCOMPARE(program->exitStatus(), QProcess::NormalExit);
        QCOMPARE(program->exitCode(), 5);
        QVERIFY(program->readAllStandardOutput().isEmpty());
    }

    void theLoopRunsUntilItIsInterrupted() {
        const auto program = start({u"hunt"_s, u"--demo"_s});
        QByteArray out;
        QVERIFY(QTest::qWaitFor(
            [&] {
                out += program->readAllStandardOutput();
                return out.contains("Runden er ferdig");
            },
            60000));
        QCOMPARE(program->state(), QProcess::Running);

        // What is changed from a terminal is changed by the Tindra that runs, which notices.
        const QMap<QString, QString> noDisplay{{u"DISPLAY"_s, u""_s}};
        const Result removed = run({u"watchers"_s, u"remove"_s, u"1"_s, u"--demo"_s}, noDisplay);
        QVERIFY2(removed.out.contains(u"Overvåker 1 er fjernet"_s), qPrintable(removed.err));
        const Result list = run({u"watchers"_s, u"list"_s, u"--demo"_s}, noDisplay);
        QVERIFY2(list.out.contains(u"EWR"_s) && !list.out.contains(u"BKK"_s), qPrintable(list.out));
        const Result backup = run({u"backup"_s, m_folder + u"/b.sqlite"_s, u"--demo"_s}, noDisplay);
        QVERIFY2(backup.code == 0, qPrintable(backup.err));
        const Result refused = run({u"restore"_s, m_folder + u"/b.sqlite"_s, u"--demo"_s});
        QCOMPARE(refused.code, 1);
        QVERIFY(refused.err.contains(u"Avslutt"_s));
        QVERIFY(run({u"hunt"_s, u"--once"_s, u"--demo"_s}).out.contains(u"ferdig: 2 overvåkere"_s));

        ::kill(static_cast<pid_t>(program->processId()), SIGINT);
        QVERIFY(program->waitForFinished(10000));
        QCOMPARE(program->exitStatus(), QProcess::NormalExit);
        QCOMPARE(program->exitCode(), 0);
        QVERIFY(QFile::remove(m_folder + u"/data/Tindra-demo/tindra.sqlite"_s));
        const Result restored =
            run({u"restore"_s, m_folder + u"/b.sqlite"_s, u"--demo"_s}, noDisplay);
        QVERIFY2(restored.out.startsWith(u"2 overvåkere"_s), qPrintable(restored.err));
        // Each day's first round leaves a copy.
        QCOMPARE(QDir(m_folder + u"/data/Tindra-demo"_s).entryList({u"tindra-copy-*"_s}).size(), 1);
    }
};

TINDRA_TEST_MAIN(TestHunt) {
    TestBus bus;
    const QCoreApplication application(argc, argv);
    TestHunt test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "test_hunt.moc"
