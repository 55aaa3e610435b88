// SPDX-License-Identifier: MIT
// From watcher to stored and announced find, with everything real but the clock: web engine, HTTP,
// SQLite, D-Bus, Secret Service.
#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SASEngine.h"
#include "core/Database.h"
#include "core/DateFmt.h"
#include "core/Keychain.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/GtkHostWindow.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "standin/StandIn.h"
#include "tests/support/ManualClock.h"
#include "tests/support/NotificationService.h"
#include "tests/support/Settled.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = standin::Misbehaviour::Kind;

class TestChain : public QObject {
    Q_OBJECT

public:
    explicit TestChain(WebKitRuntime& runtime) : m_runtime(runtime) {}

private:
    WebKitRuntime& m_runtime;

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        standin::StandIn airline{withoutDelay()};
        NotificationService desktop{QStringList{u"body-markup"_s}};
        Database database{dir.path(), clock};
        DBusNotifications notifications{QDBusConnection::sessionBus()};
        Notifier notifier{database, notifications, clock};
        SecretServiceStore secrets{clock};
        Keychain keychain{secrets};
        SessionState session;
        StandBack standBack{database.safekeeping(), clock};
        std::unique_ptr<WebKitView> view;
        std::unique_ptr<GtkHostWindow> window;
        std::unique_ptr<Capture> capture;
        std::unique_ptr<LiveSession> live;
        std::unique_ptr<SASEngine> engine;
        std::unique_ptr<Worker> worker;

        explicit World(WebKitRuntime& runtime) : view(runtime.makeView(clock)) {
            if (const auto error = airline.start())
                qFatal("%s", qPrintable(*error));
            const Site site{airline.siteOrigin(), airline.siteDomain(), airline.idpHost(),
                            airline.idpDomain()};
            connect(&session, &SessionState::signedOut, &notifier, &Notifier::notifySignedOut);
            capture = std::make_unique<Capture>(*view, clock, site);
            window = std::make_unique<GtkHostWindow>(
                *view, GtkHostWindow::Texts{SignInWindow::title(), SignInWindow::instruction(),
                                            SignInWindow::button()});
            live = std::make_unique<LiveSession>(*view, *window, clock, database, keychain, session,
                                                 standBack, *capture, site);
            engine = std::make_unique<SASEngine>(*view, clock, database.settings(), keychain,
                                                 session, standBack, *capture, *live,
                                                 [this] { return worker->isRunning(); });
            worker = std::make_unique<Worker>(database, *engine, notifier, clock);
            // Nobody signs in here.
            session.lastSessionRefresh = clock.ticks();
        }
        static standin::Options withoutDelay() {
            standin::Options options;
            options.pageDelay = 0ms;
            return options;
        }
        void add(const QString& destination, int days, bool partners = false) {
            Search search;
            search.origin = u"OSL"_s;
            search.destination = destination;
            search.cabins = {Cabin::economy, Cabin::business};
            search.dateFrom = QDate(2027, 3, 1);
            search.dateTo = QDate(2027, 3, 1).addDays(days - 1);
            search.includePartners = partners;
            database.watchers().addSearch(search);
        }
        /// One round. A capture that the airline leaves without an answer is brought to its end
        /// once nothing has been asked for a while.
        std::optional<PollSummary> round() {
            std::optional<PollSummary> summary;
            worker->pollOnce().then([&summary](PollSummary result) { summary = result; });
            qsizetype asked = 0;
            for (int quiet = 0; !summary && quiet < 1000; ++quiet) {
                QTest::qWait(20);
                const qsizetype now = airline.requests(airline.siteDomain()).size();
                if (std::exchange(asked, now) != now)
                    quiet = 0;
                if (quiet == 25)
                    clock.advance(10s);
                if (quiet == 50)
                    clock.advance(50s);
            }
            return summary;
        }
    };

private Q_SLOTS:
    void findsAreStoredAndAnnouncedOnceAndSoldOutsToo() {
        World world(m_runtime);
        world.add(u"BKK"_s, 10);
        world.add(u"EWR"_s, 10, true);
        const auto first = world.round();
        QVERIFY(first);
        QCOMPARE(first->errors, QStringList());
        QVERIFY(first->newAlerts > 3);
        QCOMPARE(first->soldOut, 0);
        QTRY_COMPARE(world.desktop.received.size(), first->newAlerts);
        const auto stored = world.database.offers().recentMatches(1000);
        QCOMPARE(stored.size(), first->newAlerts);
        QSet<qint64> watchers;
        for (const Hit& hit : stored) {
            const auto& match = std::get<Match>(hit);
            watchers.insert(match.searchId);
            QVERIFY(match.bookingURL.startsWith(world.airline.siteOrigin()));
            QVERIFY(match.points > 0 && match.seats > 0 && match.durationMinutes > 0);
            QVERIFY2(!match.key.flights.contains(u"XX1"_s), "a forged answer was believed");
        }
        QCOMPARE(watchers, (QSet<qint64>{1, 2}));
        QVERIFY(world.engine->loginStatus().state == SASLoginStatus::Case::loggedIn);

        const auto second = world.round();
        QVERIFY(second->newAlerts > 0);
        QVERIFY(second->soldOut > 0);
        QTRY_COMPARE(world.desktop.received.size(),
                     first->newAlerts + second->newAlerts + second->soldOut);
        QCOMPARE(world.database.offers().recentMatches(1000).size(), world.desktop.received.size());
    }

    void datesThatGoWrongLeaveTheOthers() {
        World world(m_runtime);
        world.add(u"LHR"_s, 8);
        const QList<std::pair<int, Kind>> wrong{{2, Kind::Error},  {3, Kind::Malformed},
                                                {4, Kind::Huge},   {5, Kind::Nested},
                                                {6, Kind::CutOff}, {7, Kind::SignIn}};
        for (const auto& [day, kind] : wrong)
            world.airline.misbehave(u"OSL-LHR-2027030%1"_s.arg(day), {kind, 0ms});
        world.airline.misbehave(u"OSL-LHR-20270308"_s, {Kind::Slow, 300ms});
        const auto summary = world.round();
        QVERIFY(summary);
        QCOMPARE(summary->errors, QStringList());
        QVERIFY(summary->notes.value(0).startsWith(u"søk 1: 6 av 8 oppslag fikk ikke svar."_s));
        // Only the first and the last day count; a lookup without faults reads the flights of all.
        const int onTwoDays = summary->fetched;
        QVERIFY(onTwoDays > 0);
        const QStringList requests = world.airline.requests(u"site.localhost"_s);
        for (int day = 1; day <= 8; ++day)
            QVERIFY(!requests.filter(u"OW_OSL-LHR-2027030%1"_s.arg(day)).isEmpty());
        world.airline.misbehave(u"*"_s, {});
        for (int day = 1; day <= 8; ++day)
            world.airline.misbehave(u"OSL-LHR-2027030%1"_s.arg(day), {});
        // Every day of this route has the same flights.
        QCOMPARE(world.round()->fetched, onTwoDays * 4);
    }

    void aSignedOutSiteIsReportedOnce() {
        World world(m_runtime);
        world.add(u"LHR"_s, 9);
        world.airline.misbehave(u"*"_s, {Kind::SignIn, 0ms});
        const auto summary = world.round();
        QVERIFY(summary);
        QCOMPARE(summary->errors.size(), 1);
        QVERIFY(summary->errors[0].startsWith(u"søk 1: Ikke innlogget hos SAS"_s));
        QVERIFY(world.engine->loginStatus().isLoggedOut());
        QTRY_COMPARE(world.desktop.received.size(), 1);
        QCOMPARE(world.desktop.received[0].summary, u"⚠️ Logget ut av SAS"_s);
        QCOMPARE(world.airline.looks(u"OSL-LHR-20270304"_s), 0);
    }
};

TINDRA_TEST_MAIN(TestChain) {
    TestBus bus;
    const QCoreApplication application(argc, argv);
    if (!bus.startSecretService())
        qFatal("no Secret Service");
    QString problem;
    const auto runtime = WebKitRuntime::start(LinuxFolders(u"Tindra"_s), problem);
    if (!runtime)
        qFatal("%s", qPrintable(problem));
    TestChain test(*runtime);
    return QTest::qExec(&test, argc, argv);
}
#include "test_chain.moc"
