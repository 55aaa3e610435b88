// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/support/RawSql.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
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

FareKey keyOf(const QString& flights) {
    return {{2027, 3, 5}, {u"OSL"_s, u"EWR"_s}, flights};
}

} // namespace

class TestOthersFinds : public QObject {
    Q_OBJECT

    static void has(AppWorld& world, const QJsonArray& finds) {
        world.http.answer = [finds](const HttpRequest&) { return answerOf(finds); };
    }

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void communityFindsAreShownAndTheFreshAreStored() {
        AppWorld world;
        world.addWatcher();
        world.addMatch([](Match& m) { m.key = keyOf(u"own"_s); });
        world.database.seen().upsertSeen(1, keyOf(u"own"_s), {{Cabin::business}, u"SK907"_s});
        const double now = secondsSince1970(world.clock.now());
        QJsonObject economy = find(u"cabin"_s, now);
        economy[u"cabin"_s] = u"economy"_s;
        has(world, {find(u"own"_s, now), find(u"old"_s, now - 1800), find(u"fresh"_s, now - 1799),
                    economy, find(u"old too"_s, 0), find(u"fresh"_s, now)});
        awaited(world.finds.refresh());
        QCOMPARE(keys(world.finds.hits()), QStringList({u"old"_s, u"old too"_s}));
        QCOMPARE(world.center.posted.size(), 1);
        QCOMPARE(keys(world.state.matches()), QStringList({u"fresh"_s, u"own"_s}));
        const Match stored = std::get<Match>(world.state.matches().constFirst());
        QCOMPARE(stored.searchId, Match::communitySearchId);
        QVERIFY(stored.isCommunity);

        // Not again, not even after a restart and after the offers were cleared; nor is what the
        // user's own watcher had found.
        world.database.offers().takeMatches();
        OthersFinds next(world.database, world.community, world.notifier, world.clock);
        awaited(next.refresh());
        QCOMPARE(world.center.posted.size(), 1);
        QCOMPARE(keys(next.hits()),
                 QStringList({u"own"_s, u"old"_s, u"fresh"_s, u"old too"_s, u"fresh"_s}));
    }

    void pausedWatchersGetNothingAndSharingOffEmptiesTheList() {
        AppWorld world;
        world.addWatcher();
        has(world, {find(u"k"_s, 0)});
        awaited(world.finds.refresh());
        QCOMPARE(world.finds.hits().size(), 1);
        const QUrlQuery query(world.http.sent.constFirst().url);
        QCOMPARE(query.queryItemValue(u"routes"_s), u"OSL-EWR"_s);
        QCOMPARE(world.http.sent.constFirst().url.path(), u"/v1/hits"_s);

        world.database.settings().set(Setting::shareHits, false);
        world.http.answer = nullptr;
        awaited(world.finds.refresh());
        QVERIFY(world.finds.hits().isEmpty());

        world.database.settings().set(Setting::shareHits, true);
        world.addWatcher(u"LHR"_s);
        world.database.watchers().toggleSearch(1);
        world.state.reload();
        has(world, {find(u"k"_s, 0)});
        awaited(world.finds.refresh());
        QVERIFY(world.finds.hits().isEmpty());
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
        auto first = world.finds.refresh();
        awaited(world.finds.refresh());
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
        awaited(world.finds.refresh());
        QCOMPARE(world.center.posted.size(), 20);
        awaited(world.finds.refresh());
        QCOMPARE(world.center.posted.size(), 25);
    }

    void nothingIsAnnouncedThatCannotBeStored() {
        AppWorld world;
        world.addWatcher();
        has(world, {find(u"k"_s, secondsSince1970(world.clock.now()))});
        runOn(world.dir.path(), "CREATE TRIGGER full BEFORE INSERT ON matches "
                                "BEGIN SELECT RAISE(FAIL, 'disk full'); END");
        awaited(world.finds.refresh());
        QCOMPARE(world.finds.hits().size(), 1);
        QVERIFY(world.center.posted.isEmpty());
    }
};

TINDRA_TEST(TestOthersFinds)
#include "test_others_finds.moc"
