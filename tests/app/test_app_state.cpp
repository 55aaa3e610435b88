// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/support/RawSql.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestAppState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void directionNeedsARoundTripThatStillExists() {
        AppWorld world;
        world.addWatcher(u"NYC"_s, [](Search& s) { s.returnDateFrom = QDate(2027, 4, 30); });
        world.addWatcher(u"NYC"_s);
        const auto direction = [&](qint64 watcher, const QString& route) {
            Match match;
            match.searchId = watcher;
            match.key.route = Route::fromText(route);
            return world.state.direction(match);
        };
        QVERIFY(direction(1, u"OSL-NYC"_s) == Direction::out);
        QVERIFY(direction(1, u"CPH-NYC"_s) == Direction::out);
        QVERIFY(direction(1, u"NYC-OSL"_s) == Direction::home);
        QVERIFY(direction(1, QString()) == Direction::home);
        QVERIFY(!direction(2, u"OSL-NYC"_s));
        QVERIFY(!direction(3, u"OSL-NYC"_s));
        QVERIFY(!direction(Match::communitySearchId, u"OSL-NYC"_s));
    }

    void newTodayCountsTheCalendarDay() {
        AppWorld world; // noon
        world.addWatcher();
        const auto add = [&](const QString& flights, std::chrono::hours before) {
            world.addMatch([&](Match& m) {
                m.key.flights = flights;
                m.foundAt = world.clock.now() - before;
            });
        };
        add(u"1"_s, 0h);
        add(u"2"_s, 12h);
        add(u"3"_s, 13h);
        world.addSoldOut();
        QCOMPARE(world.state.newToday(), 2);
        // Midnight is told, without a round.
        settle();
        const QSignalSpy reloaded(&world.state, &AppState::reloaded);
        world.clock.advance(13h);
        QCOMPARE(reloaded.size(), 1);
        QCOMPARE(world.state.newToday(), 0);
    }

    void changesAreToldOnce() {
        AppWorld world;
        const QSignalSpy searches(&world.state, &AppState::searchesChanged);
        const QSignalSpy matches(&world.state, &AppState::matchesChanged);
        const QSignalSpy onboarded(&world.state, &AppState::onboardedChanged);
        world.addWatcher();
        world.addMatch();
        world.state.reload();
        QCOMPARE(searches.count(), 1);
        QCOMPARE(matches.count(), 1);
        QCOMPARE(world.state.matchCounts().value(1), 1);
        world.state.finishOnboarding();
        world.state.finishOnboarding();
        QCOMPARE(onboarded.count(), 1);
        QVERIFY(AppState(world.database, world.worker, world.finds, world.clock).onboarded());
    }

    void aNewWatcherIsCheckedAtOnceAndTheRoundIsShown() {
        AppWorld world;
        world.airline.answer = [](const QString&, const QString&, const QString&) {
            return std::optional(QByteArray(R"({"outboundFlights":{}})"));
        };
        Search search;
        search.origin = u"OSL"_s;
        search.destination = u"LHR"_s;
        search.dateFrom = search.dateTo = QDate(2027, 3, 1);
        world.state.addSearchAndRun(search);
        QVERIFY(!world.state.lastPoll());
        settle();
        QCOMPARE(world.airline.looked.size(), 1);
        QVERIFY(world.state.lastPoll());
        QVERIFY(world.state.searches().constFirst().lastChecked);
    }

    void whatIsWrongWithStoringIsShown() {
        AppWorld world;
        QSignalSpy changed(&world.state, &AppState::storageChanged);
        world.database.safekeeping().set(Kept::storageNotice, u"skadet"_s);
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE INSERT ON kv BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        world.state.reload();
        QCOMPARE(changed.count(), 1);
        world.state.finishOnboarding();
        settle();
        QCOMPARE(changed.count(), 2);
        QVERIFY(world.state.storageProblem().contains(u"no room"_s));
        QCOMPARE(world.state.storageNotice(), u"skadet"_s);
        world.state.dismissStorageNotice();
        settle();
        QCOMPARE(world.state.storageNotice(), QString());

        // The next round finds that there is room again.
        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        world.worker.pollOnce();
        settle();
        QCOMPARE(world.state.storageProblem(), QString());
    }

    void damageIsShownAndMendedInTheNextRound() {
        AppWorld world;
        runOn(world.dir.path(), "PRAGMA writable_schema = ON; PRAGMA schema_version = 1000;"
                                "UPDATE sqlite_master SET rootpage = 9999 WHERE name = 'seen';");
        world.worker.pollOnce();
        settle();
        QVERIFY(world.state.storageProblem().startsWith(u"Databasen er skadet"_s));
        world.worker.pollOnce();
        settle();
        QCOMPARE(world.state.storageProblem(), QString());
        QVERIFY(world.state.storageNotice().contains(u"tom database"_s));
        world.addWatcher();
        QCOMPARE(world.state.searches().size(), 1);
    }

    void settingsAreReadWhenStorageIsBack() {
        AppWorld world;
        const QString folder = world.dir.path() + u"/data"_s;
        {
            Database earlier(folder, world.clock);
            earlier.settings().set(Setting::onboarded, true);
            earlier.settings().set(Setting::nativeNotify, false);
            earlier.settings().set(Setting::pollIntervalMin, 3);
        }
        // What is there is no folder for the time being.
        QVERIFY(QFile::rename(folder, folder + u"-away"_s));
        QFile inTheWay(folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        Database database(folder, world.clock);
        AppState state(database, world.worker, world.finds, world.clock);
        QVERIFY(!state.storageProblem().isEmpty() && !state.onboarded() && state.notifyOn());
        const QSignalSpy onboarded(&state, &AppState::onboardedChanged);
        QVERIFY(inTheWay.remove());
        QVERIFY(QFile::rename(folder + u"-away"_s, folder));
        QVERIFY(database.recover());
        settle();
        QCOMPARE(state.storageProblem(), QString());
        QCOMPARE(onboarded.count(), 1);
        QVERIFY(state.onboarded() && !state.notifyOn());
        QCOMPARE(state.pollIntervalMin(), 3.0);
    }
};

TINDRA_TEST(TestAppState)
#include "test_app_state.moc"
