// SPDX-License-Identifier: MIT
#include "airline/SAS.h"
#include "core/TDLog.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "tests/support/FakeLegFetcher.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/ManualClock.h"
#include "tests/support/RawSql.h"
#include "tests/support/Settled.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An ordinary response with one direct flight and as many business seats as given.
QByteArray offers(const QString& origin, const QString& destination, const QString& date,
                  int seats) {
    return uR"({"outboundFlights":{"a":{"startTimeInLocal":"%1T09:05:00","stops":0,
        "origin":{"code":"%2"},"destination":{"code":"%3"},
        "segments":[{"marketingCarrier":{"code":"SK"},"flightNumber":1}],
        "cabins":{"BUSINESS":{"f":{"products":{"p":{"productName":"BONUS",
            "price":{"points":50000},"fares":[{"avlSeats":%4}]}}}}}}}})"_s
        .arg(SAS::dashedDate(date), origin, destination, QString::number(seats))
        .toUtf8();
}

PollSummary emptyAt(Instant instant) {
    PollSummary summary;
    summary.at = instant;
    return summary;
}

} // namespace

class TestWorker : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        Database database{dir.path(), clock};
        FakeNotificationCenter center;
        Notifier notifier{database, center, clock};
        FakeLegFetcher airline;
        Worker worker{database, airline, notifier, clock, Site{}};
        QList<Match> ended;
        int rounds = 0;

        World() {
            connect(&worker, &Worker::roundEnded, &worker,
                    [this](const PollSummary&, const QList<Match>& found) {
                        ++rounds;
                        ended = found;
                    });
        }
        ~World() { settle(); }

        void add(const QString& destination = u"CPH"_s, const QString& from = u"2027-03-01"_s,
                 const QString& to = u"2027-03-02"_s) {
            Search search;
            search.origin = u"OSL"_s;
            search.destination = destination;
            search.dateFrom = from;
            search.dateTo = to;
            database.addSearch(search);
        }
        /// The airline has this many seats on every leg.
        void hasSeats(int seats) {
            airline.answer = [seats](const QString& origin, const QString& destination,
                                     const QString& date) {
                return std::optional(offers(origin, destination, date, seats));
            };
        }
        PollSummary round() { return *awaited(worker.pollOnce()); }
    };

private Q_SLOTS:
    void fromNewToKnownToSoldOutAndBack() {
        World world;
        world.add();
        world.hasSeats(2);
        QStringList statuses;
        connect(&world.worker, &Worker::changed, &world.worker,
                [&] { statuses.append(world.worker.statusText()); });
        const PollSummary first = world.round();
        QCOMPARE(first, (PollSummary{world.clock.now(), 1, 2, 2, 2, 0, {}}));
        QCOMPARE(Worker::loadSummary(world.database), first);
        QCOMPARE(world.center.posted.size(), 2);
        QCOMPARE(world.ended.size(), 2);
        QCOMPARE(world.database.recentMatches(10).size(), 2);
        QCOMPARE(world.database.recentMatches(10).last().id, world.ended.first().id);
        QCOMPARE(world.database.listSearches().first().lastFound, 2);
        QVERIFY(statuses.contains(u"Sjekker OSL → CPH…"_s));
        QVERIFY(statuses.contains(u"Sjekker OSL → CPH — OSL→CPH"_s));
        QCOMPARE(statuses.last(), u""_s);
        QCOMPARE(world.worker.lookupDone(), 2);
        QCOMPARE(world.worker.progress(), (Worker::Progress{1, 1}));
        QVERIFY(!world.worker.isRunning());

        const PollSummary second = world.round();
        QCOMPARE(second.matches, 2);
        QCOMPARE(second.newAlerts, 0);
        QCOMPARE(world.center.posted.size(), 2);
        QVERIFY(world.ended.isEmpty());

        world.hasSeats(0);
        QList<std::pair<QString, CabinSet>> gone;
        connect(&world.worker, &Worker::soldOut, &world.worker,
                [&](const Match&, const QString& key, const CabinSet& cabins) {
                    gone.append({key, cabins});
                });
        const PollSummary third = world.round();
        QCOMPARE(third.soldOut, 2);
        QCOMPARE(world.database.listSearches().first().lastFound, 0);
        QCOMPARE(gone.first(), std::pair(u"2027-03-01-OSL-CPH-SK1"_s, CabinSet{u"business"_s}));
        QCOMPARE(world.center.posted.last().title, u"🔴 Utsolgt"_s);
        QVERIFY(world.database.recentMatches(10).first().soldOut);
        QCOMPARE(world.round().soldOut, 0);

        world.hasSeats(1);
        QCOMPARE(world.round().newAlerts, 2);
    }

    void rotationOver61Legs() {
        World world;
        world.add(u"CPH"_s, u"2027-03-01"_s, u"2027-04-30"_s);
        world.hasSeats(0);
        QCOMPARE(world.round().fetched, 60);
        QCOMPARE(world.worker.rotationTotal(), 61);
        QCOMPARE(world.worker.lookupTotal(), 60);
        QCOMPARE(world.database.get(u"lookup_cursor_1"_s), u"60"_s);
        world.round();
        const QStringList dates = world.airline.calls.last().legs.first().dates;
        QCOMPARE(dates.first(2), QStringList({u"20270430"_s, u"20270301"_s}));
        QCOMPARE(dates.size(), 60);
        QCOMPARE(world.database.get(u"lookup_cursor_1"_s), u"59"_s);
        for (const QString& nonsense : {u"-7"_s, u"x"_s, u"99999999999999999999"_s}) {
            world.database.set(u"lookup_cursor_1"_s, nonsense);
            world.round();
            QCOMPARE(world.airline.calls.last().legs.first().dates.first(), u"20270301"_s);
        }
        world.database.set(u"lookup_cursor_1"_s, u"+62"_s);
        world.round();
        QCOMPARE(world.airline.calls.last().legs.first().dates.first(), u"20270302"_s);
    }

    void failuresOfOneWatcherLeaveTheOthers() {
        World world;
        world.add(u"CPH"_s, u""_s);
        world.add(u"LHR"_s);
        world.add(u"ARN"_s);
        world.airline.answer = [](const QString& origin, const QString& destination,
                                  const QString& date) -> std::optional<QByteArray> {
            if (destination == u"LHR")
                return date == u"20270301" ? std::nullopt : std::optional<QByteArray>("<html>");
            return offers(origin, destination, date, 1);
        };
        const PollSummary summary = world.round();
        QCOMPARE(summary.searches, 3);
        QCOMPARE(summary.newAlerts, 2);
        QCOMPARE(summary.errors,
                 QStringList({u"søk 1: SAS-søk krever avreisedato."_s,
                              u"søk 2: SAS ga ingen data — sjekk EuroBonus-innloggingen "
                              u"(Innstillinger)."_s}));
        QVERIFY(world.database.listSearches().first().lastChecked);
        // An answer without flights is an answer.
        world.airline.answer = [](const QString&, const QString&, const QString& date) {
            return date == u"20270301" ? std::nullopt : std::optional<QByteArray>("{}");
        };
        QCOMPARE(world.round().errors.size(), 1);
    }

    void aSessionThatDiesEndsTheRound() {
        World world;
        world.add();
        world.add(u"LHR"_s);
        world.airline.answer = [&world](const QString&, const QString&, const QString&) {
            world.airline.status = SASLoginStatus::loggedOut();
            return std::optional<QByteArray>();
        };
        const PollSummary summary = world.round();
        QCOMPARE(summary.searches, 1);
        QCOMPARE(summary.errors, QStringList{u"søk 1: Ikke innlogget hos SAS — søkene får ingen "
                                             u"data. Logg inn via Innstillinger."_s});
        QCOMPARE(world.rounds, 1);
    }

    void aRoundWithoutANetworkSaysSoAndTheNextOneIsFine() {
        World world;
        for (const QString& destination : {u"CPH"_s, u"LHR"_s, u"ARN"_s})
            world.add(destination);
        const QString text =
            u"Får ikke kontakt med SAS. Sjekk nettet – Tindra prøver igjen av seg selv."_s;
        bool isUp = true;
        world.airline.answer = [&](const QString& origin, const QString& destination,
                                   const QString& date) {
            world.airline.unreachable = !isUp;
            return isUp ? std::optional(offers(origin, destination, date, 1)) : std::nullopt;
        };
        // In the middle of the second watcher, whose first date is used all the same.
        connect(&world.worker, &Worker::changed, &world.worker, [&] {
            isUp = isUp && !(world.worker.progress().done == 1 && world.worker.lookupDone() == 2);
        });
        const PollSummary cut = world.round();
        QCOMPARE(cut.errors, QStringList{u"søk 2: "_s + text});
        QCOMPARE(cut.searches, 2);
        QCOMPARE(cut.newAlerts, 3);
        world.worker.disconnect(&world.worker);

        for (int i = 0; i < 6; ++i) {
            const PollSummary nothing = world.round();
            QCOMPARE(nothing.errors, QStringList{u"søk 1: "_s + text});
            QCOMPARE(nothing.soldOut, 0);
        }
        QCOMPARE(world.database.recentMatches(10).size(), 3);

        isUp = true;
        const PollSummary back = world.round();
        QCOMPARE(back.errors, QStringList());
        QCOMPARE(back.newAlerts, 3);
        QCOMPARE(Worker::loadSummary(world.database), back);

        // A revival that could not reach anybody does not use up the half hour.
        world.airline.status = SASLoginStatus::loggedOut();
        world.airline.verified = SASLoginStatus::loggedOut();
        world.airline.unreachable = true;
        world.round();
        world.airline.unreachable = false;
        world.round();
        world.round();
        QCOMPARE(world.airline.verifications, 2);
    }

    void roundsGoOnWhateverHappensToTheTime_data() {
        using Happens = std::function<void(ManualClock&)>;
        QTest::addColumn<Happens>("happens");
        QTest::addColumn<int>("roundsIn30Minutes");
        const auto set = [](std::chrono::milliseconds forward) {
            return Happens([forward](ManualClock& clock) { clock.setWallClock(forward); });
        };
        QTest::newRow("three hours forward") << set(3h) << 3;
        QTest::newRow("two hours back") << set(-2h) << 3;
        QTest::newRow("over midnight") << set(12h) << 3;
        QTest::newRow("back to another year") << set(-24h * 400) << 3;
        // The round that is due comes at once, and not one for every ten minutes missed.
        QTest::newRow("a night of sleep")
            << Happens([](ManualClock& clock) { clock.suspend(9h); }) << 4;
    }
    void roundsGoOnWhateverHappensToTheTime() {
        QFETCH(const std::function<void(ManualClock&)>, happens);
        QFETCH(const int, roundsIn30Minutes);
        World world;
        world.add();
        world.hasSeats(1);
        world.worker.startTimer(10);
        settle();
        QCOMPARE(world.rounds, 1);
        happens(world.clock);
        world.clock.advance(30min);
        QCOMPARE(world.rounds, 1 + roundsIn30Minutes);
        QVERIFY(!world.worker.isRunning());
        QVERIFY(world.database.listSearches().first().lastChecked <= world.clock.now());
        QCOMPARE(world.database.recentMatches(10).size(), 2);
        world.worker.stopTimer();
        settle();
    }

    void aNightOfSleepInTheMiddleOfARound() {
        World world;
        world.add();
        world.add(u"LHR"_s);
        world.hasSeats(1);
        world.airline.heldLookup = 2;
        world.worker.startTimer(10);
        settle();
        QVERIFY(world.worker.isRunning());
        world.clock.suspend(9h);
        QCOMPARE(world.rounds, 0);
        world.airline.goOn.resolve(true);
        settle();
        QCOMPARE(world.rounds, 1);
        QCOMPARE(world.ended.size(), 4);
        QVERIFY(!world.worker.isBusy());
        world.clock.advance(10min);
        QCOMPARE(world.rounds, 2);
        world.worker.stopTimer();
        settle();
    }

    void oneRevivalInHalfAnHour() {
        World world;
        world.add();
        world.hasSeats(1);
        QFile log(world.dir.path() + u"/ui.log"_s);
        TDLog::start(log.fileName(), &world.clock);
        world.airline.status = SASLoginStatus::loggedOut();
        world.airline.verified = SASLoginStatus::loggedOut();
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(world.round(), emptyAt(world.clock.now()));
            world.clock.advance(10min - 1ms);
        }
        QCOMPARE(world.airline.verifications, 1);
        QCOMPARE(world.rounds, 0);
        QVERIFY(!Worker::loadSummary(world.database));
        world.clock.advance(3ms);

        // Two requests while the session is revived make one round.
        world.airline.verified = SASLoginStatus::loggedIn(world.clock.now());
        std::optional<PollSummary> early;
        auto first = world.worker.pollOnce();
        world.worker.pollOnce().then([&early](PollSummary summary) { early = summary; });
        QCOMPARE(awaited(std::move(first))->newAlerts, 2);
        QCOMPARE(early, emptyAt(world.clock.now()));
        QCOMPARE(world.airline.verifications, 2);
        QCOMPARE(world.rounds, 1);
        TDLog::start({}, nullptr);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QCOMPARE(log.readAll().count("worker: utlogget — proever samlet re-innlogging (neste "
                                     "forsoek om 30 min)\n"),
                 2);

        world.airline.status = SASLoginStatus::loggedOut();
        world.worker.forgetRevivalAttempt();
        world.round();
        QCOMPARE(world.airline.verifications, 3);
    }

    void watchersThatGoAwayInTheMiddle_data() {
        QTest::addColumn<bool>("paused");
        QTest::newRow("deleted") << false;
        QTest::newRow("paused") << true;
    }
    void watchersThatGoAwayInTheMiddle() {
        QFETCH(bool, paused);
        World world;
        world.add();
        world.add(u"LHR"_s);
        world.airline.answer = [&](const QString& origin, const QString& destination,
                                   const QString& date) {
            for (const qint64 id : {1, 2})
                paused ? world.database.toggleSearch(id) : world.database.deleteSearch(id);
            return std::optional(offers(origin, destination, date, 1));
        };
        const PollSummary summary = world.round();
        QCOMPARE(summary.searches, 1);
        QCOMPARE(summary.fetched, 0);
        QCOMPARE(world.worker.lookupDone(), 1);
        QVERIFY(world.center.posted.isEmpty());
        QVERIFY(world.database.recentMatches(10).isEmpty());
        QCOMPARE(world.rounds, 1);
    }

    void nothingToDoIsNoRound() {
        World world;
        world.add();
        world.database.toggleSearch(1);
        int stored = 0;
        connect(&world.worker, &Worker::stored, &world.worker, [&stored] { ++stored; });
        QCOMPARE(world.round(), emptyAt(world.clock.now()));
        QCOMPARE(stored, 1);
        QCOMPARE(world.rounds, 0);
        QVERIFY(!world.worker.isRunning());
        QVERIFY(!Worker::loadSummary(world.database));
    }

    void theLoopKeepsTheStoredInterval() {
        World world;
        world.add();
        world.hasSeats(0);
        world.worker.startTimer(10);
        settle();
        QCOMPARE(world.rounds, 1);
        world.clock.advance(10min - 1ms);
        QCOMPARE(world.rounds, 1);
        world.database.set(u"poll_interval_min"_s, u"0.5"_s);
        world.clock.advance(1ms);
        QCOMPARE(world.rounds, 2);
        world.clock.advance(1min);
        QCOMPARE(world.rounds, 3);
        world.database.set(u"poll_interval_min"_s, u"abc"_s);
        world.clock.advance(1min);
        QCOMPARE(world.rounds, 4);
        world.clock.advance(9min);
        QCOMPARE(world.rounds, 4);
        world.clock.advance(1min);
        QCOMPARE(world.rounds, 5);
        // Nonsense neither hammers the airline nor ends the hunt.
        for (const QString& nonsense : {u"nan"_s, u"inf"_s, u"-5"_s}) {
            world.database.set(u"poll_interval_min"_s, nonsense);
            const int before = world.rounds;
            world.clock.advance(10min);
            QVERIFY2(world.rounds - before >= 1 && world.rounds - before <= 10,
                     qPrintable(nonsense));
        }
        world.database.set(u"poll_interval_min"_s, u"1e300"_s);
        world.clock.advance(10min);
        const int before = world.rounds;
        world.clock.advance(7 * 24h);
        QCOMPARE(world.rounds, before + 1);
        world.database.set(u"poll_interval_min"_s, u"10"_s);
        world.rounds = 5;
        // A restarted loop replaces the old one.
        world.worker.startTimer(10);
        settle();
        QCOMPARE(world.rounds, 6);
        world.clock.advance(10min);
        QCOMPARE(world.rounds, 7);
        world.worker.stopTimer();
        world.clock.advance(1h);
        QCOMPARE(world.rounds, 7);
    }

    void datesWithoutDataSellNothingOut() {
        World world;
        world.add();
        world.hasSeats(1);
        world.round();
        world.airline.answer = [](const QString& origin, const QString& destination,
                                  const QString& date) {
            return date == u"20270301" ? std::nullopt
                                       : std::optional(offers(origin, destination, date, 1));
        };
        QCOMPARE(world.round().soldOut, 0);
        world.hasSeats(1);
        QCOMPARE(world.round().newAlerts, 0);
    }

    void whatCannotBeStoredIsTriedAgain() {
        World world;
        world.add();
        world.hasSeats(1);
        world.round();
        world.database.deleteSearch(1);
        world.add(u"LHR"_s);
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE INSERT ON seen BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        const PollSummary refused = world.round();
        QCOMPARE(refused.newAlerts, 2);
        QCOMPARE(world.ended.first().id, 0);
        QVERIFY(world.database.recentMatches(10).isEmpty());
        QVERIFY(world.database.seenCabins(2).isEmpty());
        QVERIFY(world.database.problem());
        const auto announced = world.center.posted.size();

        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        QCOMPARE(world.round().newAlerts, 2);
        QCOMPARE(world.database.recentMatches(10).size(), 2);
        QVERIFY(!world.database.problem());
        // Said once, all the same.
        QCOMPARE(world.center.posted.size(), announced);

        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE UPDATE ON seen BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        world.hasSeats(0);
        QCOMPARE(world.round().soldOut, 0);
        QCOMPARE(world.center.posted.size(), announced);
        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        QCOMPARE(world.round().soldOut, 2);
        QCOMPARE(world.center.posted.size(), announced + 2);
    }

    void storageIsMendedWhileSignedOut() {
        World world;
        world.airline.status = SASLoginStatus::loggedOut();
        world.airline.verified = SASLoginStatus::loggedOut();
        world.round();
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE INSERT ON kv BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        world.database.set(u"x"_s, u"1"_s);
        const QSignalSpy stored(&world.worker, &Worker::stored);
        world.round();
        QVERIFY(world.database.problem());
        QCOMPARE(stored.count(), 0);
        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        world.round();
        world.round();
        QVERIFY(!world.database.problem());
        QCOMPARE(stored.count(), 1);
    }

    void nothingMoreIsStoredOnceTheWatcherIsGone() {
        World world;
        // More finds than one step takes: two cabins on sixty dates.
        world.add(u"CPH"_s, u"2027-03-01"_s, u"2027-04-29"_s);
        world.add(u"LHR"_s, u"2027-03-01"_s, u"2027-04-29"_s);
        world.hasSeats(1);
        connect(&world.worker, &Worker::matchFound, &world.worker, [&world](const Match& match) {
            if (match.searchId == 1)
                world.database.deleteSearch(1);
        });
        world.round();
        QVERIFY(world.database.activeMatchCounts().value(1) == 0);
        QVERIFY(world.database.seenCabins(1).isEmpty());
        QCOMPARE(world.database.activeMatchCounts().value(2), 60);
    }

    void aWorkerThatGoesAwayInTheMiddle_data() {
        QTest::addColumn<bool>("afterTheFirstFind");
        QTest::newRow("before an answer") << false;
        QTest::newRow("between storing and the end") << true;
    }
    void aWorkerThatGoesAwayInTheMiddle() {
        QFETCH(bool, afterTheFirstFind);
        auto world = std::make_unique<World>();
        world->add();
        world->hasSeats(1);
        auto worker = std::make_unique<Worker>(world->database, world->airline, world->notifier,
                                               world->clock, Site{});
        worker->startTimer(10);
        if (afterTheFirstFind)
            connect(worker.get(), &Worker::matchFound, this, [&worker] {
                QMetaObject::invokeMethod(
                    qApp, [&worker] { worker.reset(); }, Qt::QueuedConnection);
            });
        else
            worker.reset();
        settle();
        QVERIFY(!worker);
        QCOMPARE(world->database.recentMatches(10).size(), afterTheFirstFind ? 2 : 0);
        QVERIFY(!Worker::loadSummary(world->database));
    }
};

QTEST_GUILESS_MAIN(TestWorker)
#include "test_worker.moc"
