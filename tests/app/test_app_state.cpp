// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/support/RawSql.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QJsonObject find(const QString& key, double foundAt) {
    return {{u"key"_s, u"2027-03-05-OSL-EWR-"_s + key},
            {u"cabin"_s, u"business"_s},
            {u"route"_s, u"OSL-EWR"_s},
            {u"fromCity"_s, u"Oslo"_s},
            {u"toCity"_s, u"New York"_s},
            {u"stopsText"_s, u"direkte"_s},
            {u"flight"_s, u"SK907"_s},
            {u"seats"_s, 2},
            {u"points"_s, 60000},
            {u"travelDate"_s, u"2027-03-05"_s},
            {u"foundAt"_s, foundAt}};
}

HttpResponse answerOf(const QJsonArray& finds) {
    const QJsonObject body{{u"hits"_s, finds}};
    return {200, QJsonDocument(body).toJson()};
}

/// The flights of each.
QStringList keys(const QList<Match>& matches) {
    QStringList result;
    for (const Match& match : matches)
        result.append(match.key.flights);
    return result;
}

QStringList keys(const QList<Hit>& hits) {
    QStringList result;
    for (const Hit& hit : hits)
        result.append(Hits::key(hit).flights);
    return result;
}

FareKey fareKey(const QString& flights) {
    return {{2027, 3, 5}, {u"OSL"_s, u"EWR"_s}, flights};
}

QStringList texts(const QList<Route>& routes) {
    QStringList result;
    for (const Route& route : routes)
        result.append(route.text());
    return result;
}

} // namespace

class TestAppState : public QObject {
    Q_OBJECT

    static void has(AppWorld& world, const QJsonArray& finds) {
        world.http.answer = [finds](const HttpRequest&) { return answerOf(finds); };
    }

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void settingsHaveDefaults_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<double>("minutes");
        QTest::newRow("missing") << QString() << 10.0;
        QTest::newRow("no number") << u"abc"_s << 10.0;
        QTest::newRow("no finite number") << u"inf"_s << 10.0;
        QTest::newRow("a fraction") << u"2.5"_s << 2.5;
    }

    void settingsHaveDefaults() {
        QFETCH(QString, stored);
        AppWorld world;
        if (!stored.isNull())
            world.database.set(u"poll_interval_min"_s, stored);
        const AppState state(world.database, world.worker, world.community, world.notifier,
                             world.clock);
        QTEST(state.pollIntervalMin(), "minutes");
        QVERIFY(!state.onboarded());
        QVERIFY(state.notifyOn());
    }

    void watchedRoutesAreThoseOfEnabledWatchers() {
        AppWorld world;
        QVERIFY(world.state.watchedRoutes().isEmpty());
        world.addWatcher(u"NYC"_s, [](Search& s) { s.origin = u"OSL,BGO"_s; });
        QCOMPARE(texts(world.state.watchedRoutes()), QStringList({u"BGO-NYC"_s, u"OSL-NYC"_s}));
        // The same route twice, the way back, and a city that is searched from the hub.
        world.addWatcher(u"nyc, BKK"_s, [](Search& s) { s.returnDateTo = QDate(2027, 4, 30); });
        QCOMPARE(
            texts(world.state.watchedRoutes()),
            QStringList({u"BGO-NYC"_s, u"BKK-CPH"_s, u"CPH-BKK"_s, u"NYC-OSL"_s, u"OSL-NYC"_s}));
        world.database.toggleSearch(2);
        world.database.toggleSearch(1);
        world.state.reload();
        QVERIFY(world.state.watchedRoutes().isEmpty());
    }

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
        QVERIFY(AppState(world.database, world.worker, world.community, world.notifier, world.clock)
                    .onboarded());
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
        QCOMPARE(world.state.searches().size(), 1);
        QVERIFY(!world.state.lastPoll());
        settle();
        QCOMPARE(world.airline.looked.size(), 1);
        QVERIFY(world.state.lastPoll());
        QVERIFY(world.state.searches().constFirst().lastChecked);
    }

    void communityFindsAreShownAndTheFreshAreStored() {
        AppWorld world;
        world.addWatcher();
        world.addMatch([](Match& m) { m.key = fareKey(u"own"_s); });
        world.database.upsertSeen(1, fareKey(u"own"_s), {{Cabin::business}, u"SK907"_s});
        const double now = secondsSince1970(world.clock.now());
        QJsonObject economy = find(u"cabin"_s, now);
        economy[u"cabin"_s] = u"economy"_s;
        has(world, {find(u"own"_s, now), find(u"old"_s, now - 1800), find(u"fresh"_s, now - 1799),
                    economy, find(u"old too"_s, 0), find(u"fresh"_s, now)});
        awaited(world.state.refreshCommunity());
        QCOMPARE(keys(world.state.communityHits()), QStringList({u"old"_s, u"old too"_s}));
        QCOMPARE(world.center.posted.size(), 1);
        QCOMPARE(keys(world.state.matches()), QStringList({u"fresh"_s, u"own"_s}));
        const Match stored = std::get<Match>(world.state.matches().constFirst());
        QCOMPARE(stored.searchId, Match::communitySearchId);
        QVERIFY(stored.isCommunity);

        // Not again, not even after a restart and after the offers were cleared; nor is what the
        // user's own watcher had found.
        world.database.takeMatches();
        AppState next(world.database, world.worker, world.community, world.notifier, world.clock);
        awaited(next.refreshCommunity());
        QCOMPARE(world.center.posted.size(), 1);
        QCOMPARE(keys(next.communityHits()),
                 QStringList({u"own"_s, u"old"_s, u"fresh"_s, u"old too"_s, u"fresh"_s}));
    }

    void pausedWatchersGetNothingAndSharingOffEmptiesTheList() {
        AppWorld world;
        world.addWatcher();
        has(world, {find(u"k"_s, 0)});
        awaited(world.state.refreshCommunity());
        QCOMPARE(world.state.communityHits().size(), 1);
        const QUrlQuery query(world.http.sent.constFirst().url);
        QCOMPARE(query.queryItemValue(u"routes"_s), u"OSL-EWR"_s);
        QCOMPARE(world.http.sent.constFirst().url.path(), u"/v1/hits"_s);

        world.database.set(u"share_hits"_s, u"0"_s);
        world.http.answer = nullptr;
        awaited(world.state.refreshCommunity());
        QVERIFY(world.state.communityHits().isEmpty());

        world.database.set(u"share_hits"_s, u"1"_s);
        world.addWatcher(u"LHR"_s);
        world.database.toggleSearch(1);
        world.state.reload();
        has(world, {find(u"k"_s, 0)});
        awaited(world.state.refreshCommunity());
        QVERIFY(world.state.communityHits().isEmpty());
    }

    void aLateAnswerSaysNothing() {
        AppWorld world;
        world.addWatcher();
        const double now = secondsSince1970(world.clock.now());
        OneShot<bool> older;
        int asked = 0;
        world.http.hold = [&] { return ++asked == 1 ? std::optional(older) : std::nullopt; };
        world.http.answer = [&](const HttpRequest&) {
            return answerOf(asked == 1 ? QJsonArray() : QJsonArray{find(u"k"_s, now)});
        };
        auto first = world.state.refreshCommunity();
        awaited(world.state.refreshCommunity());
        QCOMPARE(keys(world.state.matches()), QStringList{u"k"_s});
        world.http.answer = [](const HttpRequest&) { return answerOf({}); };
        older.resolve(true);
        awaited(std::move(first));
        QCOMPARE(keys(world.state.matches()), QStringList{u"k"_s});
    }

    void aFloodIsAnnouncedByAndBy() {
        AppWorld world;
        world.addWatcher();
        QJsonArray finds;
        for (int i = 0; i < 25; ++i)
            finds.append(find(u"k%1"_s.arg(i), secondsSince1970(world.clock.now())));
        has(world, finds);
        awaited(world.state.refreshCommunity());
        QCOMPARE(world.center.posted.size(), 20);
        awaited(world.state.refreshCommunity());
        QCOMPARE(world.center.posted.size(), 25);
    }

    void nothingIsAnnouncedThatCannotBeStored() {
        AppWorld world;
        world.addWatcher();
        has(world, {find(u"k"_s, secondsSince1970(world.clock.now()))});
        runOn(world.dir.path(), "CREATE TRIGGER full BEFORE INSERT ON matches "
                                "BEGIN SELECT RAISE(FAIL, 'disk full'); END");
        awaited(world.state.refreshCommunity());
        QCOMPARE(world.state.communityHits().size(), 1);
        QVERIFY(world.center.posted.isEmpty());
    }

    void whatIsWrongWithStoringIsShown() {
        AppWorld world;
        QSignalSpy changed(&world.state, &AppState::storageChanged);
        world.database.set(u"storage_notice"_s, u"skadet"_s);
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE INSERT ON kv BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        world.state.reload();
        QCOMPARE(changed.count(), 1);
        world.state.finishOnboarding();
        QCOMPARE(changed.count(), 2);
        QVERIFY(world.state.storageProblem().contains(u"no room"_s));
        QCOMPARE(world.state.storageNotice(), u"skadet"_s);
        world.state.dismissStorageNotice();
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
            earlier.set(u"onboarded"_s, u"1"_s);
            earlier.set(u"native_notify"_s, u"0"_s);
            earlier.set(u"poll_interval_min"_s, u"3"_s);
        }
        // What is there is no folder for the time being.
        QVERIFY(QFile::rename(folder, folder + u"-away"_s));
        QFile inTheWay(folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        Database database(folder, world.clock);
        AppState state(database, world.worker, world.community, world.notifier, world.clock);
        QVERIFY(!state.storageProblem().isEmpty() && !state.onboarded() && state.notifyOn());
        const QSignalSpy onboarded(&state, &AppState::onboardedChanged);
        QVERIFY(inTheWay.remove());
        QVERIFY(QFile::rename(folder + u"-away"_s, folder));
        QVERIFY(database.recover());
        state.reload();
        QCOMPARE(state.storageProblem(), QString());
        QCOMPARE(onboarded.count(), 1);
        QVERIFY(state.onboarded() && !state.notifyOn());
        QCOMPARE(state.pollIntervalMin(), 3.0);
    }

    void aWildIntervalIsCut() {
        for (const auto& [stored, expected] :
             {std::pair(u"2.5"_s, 2.5), std::pair(u"-3"_s, 1.0), std::pair(u"1e300"_s, 10080.0),
              std::pair(u"nan"_s, 10.0), std::pair(u"abc"_s, 10.0)}) {
            AppWorld world;
            world.database.set(u"poll_interval_min"_s, stored);
            const AppState state(world.database, world.worker, world.community, world.notifier,
                                 world.clock);
            QCOMPARE(state.pollIntervalMin(), expected);
        }
    }
};

TINDRA_TEST(TestAppState)
#include "test_app_state.moc"
