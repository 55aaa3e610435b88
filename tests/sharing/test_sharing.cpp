// SPDX-License-Identifier: MIT
// Two hunters and one service, over real HTTP and on both of its stores.
#include "app/AppState.h"
#include "community/RedisStore.h"
#include "community/Service.h"
#include "community/SqliteStore.h"
#include "platform/linux/CurlSession.h"
#include "platform/linux/LinuxClock.h"
#include "sharing/Sharing.h"
#include "tests/support/AppWorld.h"
#include "tests/support/RedisServer.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QDate bookable(2027, 3, 1);

/// One install: everything of its own but the service. Its clock is the service's too.
struct Hunter : AppWorld {
    LinuxClock realTime;
    CurlSession network;
    Community shared;
    OthersFinds theirs{database, shared, notifier, clock};
    AppState shown{database, worker, theirs, clock};
    Sharing sharing{worker, shared, theirs, realTime};

    explicit Hunter(const community::Service& service)
        : shared(database.settings(), network, clock, Site{},
                 QString::fromStdString(service.address())) {
        addWatcher(u"EWR"_s, [](Search& s) { s.dateFrom = s.dateTo = bookable; });
        shown.reload();
    }

    /// The airline has so many seats from now on.
    void airlineHas(int seats) {
        airline.answer = [seats](const QString& from, const QString& to, const QString&) {
            QByteArray body = "{'outboundFlights':{'a':{'startTimeInLocal':'2027-03-01T09:05:00',"
                              "'stops':0,'origin':{'code':'%1'},'destination':{'code':'%2'},"
                              "'segments':[{'marketingCarrier':{'code':'SK'},'flightNumber':907}],"
                              "'cabins':{'BUSINESS':{'f':{'products':{'p':{'productName':'BONUS',"
                              "'price':{'points':60000},'fares':[{'avlSeats':%3}]}}}}}}}}";
            body.replace('\'', '"').replace("%1", from.toLatin1()).replace("%2", to.toLatin1());
            return std::optional(body.replace("%3", QByteArray::number(seats)));
        };
    }
    void round() {
        awaited(worker.pollOnce());
        awaited(sharing.finished(15s));
    }
    qsizetype announced() const { return center.posted.size(); }
};

} // namespace

class TestSharing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFindOfOneIsShownToTheOtherOnce_data() {
        QTest::addColumn<bool>("redis");
        QTest::newRow("SQLite") << false;
        QTest::newRow("Redis") << true;
    }

    void aFindOfOneIsShownToTheOtherOnce() {
        QFETCH(bool, redis);
        std::unique_ptr<RedisServer> server = redis ? std::make_unique<RedisServer>() : nullptr;
        QTemporaryDir dir;
        community::Options options;
        const auto file = (dir.path() + u"/finds.sqlite"_s).toStdString();
        options.store = redis ? community::inRedis(server->url()) : community::inSqlite(file);
        // The clock of the hunters' world: a date in March 2027 is no more than 400 days ahead.
        options.clock = [] {
            return community::Time(std::chrono::seconds(
                QDateTime(QDate(2027, 1, 15), QTime(12, 0), Qt::UTC).toSecsSinceEpoch()));
        };
        community::Service service(options);
        QVERIFY(!service.start());
        Hunter first(service);
        Hunter second(service);

        first.airlineHas(2);
        second.airlineHas(0);
        first.round();
        QCOMPARE(first.announced(), 1);
        QVERIFY(first.shown.communityHits().isEmpty());
        second.round();
        QCOMPARE(second.announced(), 1);
        QVERIFY(second.center.posted[0].title.contains(u"Fellesskapet"));
        QCOMPARE(second.shown.matches().size(), 1);
        const auto& shared = std::get<Match>(second.shown.matches()[0]);
        QVERIFY(shared.isCommunity);
        QCOMPARE(shared.seats, 2);

        // Once, also after a restart.
        second.round();
        OthersFinds restarted(second.database, second.shared, second.notifier, second.clock);
        awaited(restarted.refresh());
        QCOMPARE(second.announced(), 1);
        QCOMPARE(second.shown.matches().size(), 1);
        QVERIFY(restarted.hits().isEmpty());

        // Nor does a service that fails take away what was found.
        second.database.settings().set(Setting::communityUrl, u"http://127.0.0.1:1"_s);
        second.round();
        QCOMPARE(second.shown.matches().size(), 1);
        second.database.settings().set(Setting::communityUrl,
                                       QString::fromStdString(service.address()));

        first.airlineHas(0);
        first.round();
        second.round();
        QVERIFY(second.shown.matches().isEmpty());
        QCOMPARE(second.announced(), 1);
    }
};

TINDRA_TEST_MAIN(TestSharing) {
    qputenv("TZ", "UTC");
    const QCoreApplication application(argc, argv);
    TestSharing test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_sharing.moc"
