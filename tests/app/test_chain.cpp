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
        std::optional<PollSummary> round() { return awaited(worker->pollOnce(), 60000); }
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
