// SPDX-License-Identifier: MIT
#include "core/DateFmt.h"
#include "core/Err.h"
#include "polling/FareComparison.h"
#include "polling/Legs.h"
#include "polling/Matching.h"
#include "polling/PollSummary.h"
#include "polling/Routes.h"
#include "polling/Turn.h"
#include "tests/support/TestProgram.h"

#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Search watcher() {
    Search search;
    search.id = 7;
    search.origin = u"OSL"_s;
    search.destination = u"BKK"_s;
    search.cabins = {Cabin::economy, Cabin::business};
    search.dateFrom = QDate(2027, 3, 1);
    search.dateTo = QDate(2027, 3, 31);
    return search;
}

const Route route{u"CPH"_s, u"BKK"_s};

Fare fare(const QString& flight, int economy, int business, QDate date = {2027, 3, 1}) {
    Fare fare;
    fare.key = {date, route, flight};
    fare.fromCity = u"København"_s;
    fare.toCity = u"Bangkok"_s;
    fare.stops = {1, {u"ARN"_s}};
    fare.localDepart = {date, {9, 5}};
    fare.localArrive = {{2027, 3, 2}, {6, 10}};
    fare.durationMinutes = 785;
    fare.availability = {{Cabin::economy, economy},
                         {Cabin::premeco, 0},
                         {Cabin::business, business},
                         {Cabin::first, 0}};
    fare.saverPoints = {{Cabin::business, 75000}};
    fare.bookingURL = u"https://site.example/"_s;
    return fare;
}

const Leg leg{route, QDate(2027, 3, 1)};
const Instant now = instantFromSeconds(1.8e9);

SeenStore::Seen seen(const CabinSet& cabins, const QString& flight) {
    return {cabins, u"CPH-BKK 2027-03-01 · "_s + flight};
}

QStringList texts(const QList<Route>& routes) {
    QStringList texts;
    for (const Route& one : routes)
        texts.append(one.text());
    return texts;
}

} // namespace

class TestMatching : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFirstFindInTwoCabins() {
        FareComparison comparison(watcher(), {});
        const auto news = comparison.compare(
            leg, {fare(u"SK1,SK2"_s, 4, 2), fare(u"SK1,SK2"_s, 4, 2), fare(u"SK3"_s, 0, 0)}, now);
        QCOMPARE(news.size(), 1);
        QCOMPARE(news[0].found.size(), 2);
        Match match;
        match.searchId = 7;
        match.key = {leg.date, route, u"SK1,SK2"_s};
        match.fromCity = u"København"_s;
        match.toCity = u"Bangkok"_s;
        match.depart = {leg.date, {9, 5}};
        match.arrive = {{2027, 3, 2}, {6, 10}};
        match.stops = Stops{1, {u"ARN"_s}};
        match.durationMinutes = 785;
        match.cabin = Cabin::business;
        match.seats = 2;
        match.points = 75000;
        match.bookingURL = u"https://site.example/"_s;
        match.foundAt = now;
        QCOMPARE(news[0].found[0], match);
        QCOMPARE(news[0].found[1].cabin, Cabin::economy);
        QCOMPARE(news[0].found[1].points, 0);
        QCOMPARE(news[0].seen, seen({Cabin::economy, Cabin::business}, u"SK1,SK2"_s));
        QVERIFY(!news[0].soldOut);
        QCOMPARE(comparison.satisfied(), 2);
        // The same fare in another leg's answer is no news.
        const Leg other{route, QDate(2027, 3, 2)};
        QVERIFY(comparison.compare(other, {fare(u"SK1,SK2"_s, 4, 2)}, now).isEmpty());
    }

    void whatWasSeenBefore_data() {
        QTest::addColumn<CabinSet>("before");
        QTest::addColumn<QList<Fare>>("fares");
        QTest::addColumn<QString>("found");
        QTest::addColumn<QString>("gone");
        QTest::addColumn<QString>("seen");
        const CabinSet both{Cabin::economy, Cabin::business};
        const auto row = [](const char* name, const CabinSet& before, const QList<Fare>& fares,
                            const QString& found, const QString& gone, const QString& seen) {
            QTest::newRow(name) << before << fares << found << gone << seen;
        };
        // The last column: what is stored as seen, "-" where that stays as it was.
        row("as before", both, {fare(u"SK1"_s, 1, 1)}, {}, {}, u"-"_s);
        row("in pieces", both, {fare(u"SK1"_s, 1, 0), fare(u"SK1"_s, 0, 1)}, {}, {},
            u"business,economy"_s);
        row("one cabin gone", both, {fare(u"SK1"_s, 4, 0)}, {}, u"business"_s, u"economy"_s);
        row("one gone, one new", {Cabin::business}, {fare(u"SK1"_s, 4, 0)}, u"economy"_s,
            u"business"_s, u"economy"_s);
        row("all gone", both, {}, {}, u"business,economy"_s, u""_s);
        row("no longer wanted", {Cabin::first}, {}, {}, {}, u""_s);
        row("gone before", {}, {}, {}, {}, u"-"_s);
        row("back again", {}, {fare(u"SK1"_s, 1, 0)}, u"economy"_s, {}, u"economy"_s);
    }
    void whatWasSeenBefore() {
        QFETCH(const CabinSet, before);
        QFETCH(const QList<Fare>, fares);
        const FareKey key{leg.date, route, u"SK1"_s};
        FareComparison comparison(watcher(), {{key, seen(before, u"SK1"_s)}});
        const auto news = comparison.compare(leg, fares, now);
        // All that one fare says is stored together.
        QVERIFY(news.size() <= 1);
        const FareNews one = news.value(0);
        CabinSet found;
        for (const Match& match : one.found)
            found.insert(match.cabin);
        QTEST(encodeCabins(found), "found");
        QTEST(encodeCabins(one.soldOut.value_or(SoldOut()).cabins), "gone");
        QTEST(one.seen ? encodeCabins(one.seen->cabins) : u"-"_s, "seen");
        if (!one.soldOut)
            return;
        const SoldOut record{0, 7, key, one.soldOut->cabins, u"CPH-BKK 2027-03-01 · SK1"_s, now};
        QVERIFY(one.soldOut == record && !record.cabins.isEmpty());
        // Told once.
        QVERIFY(comparison.compare(leg, fares, now).isEmpty());
    }

    void onlyTheLegItselfSellsOut() {
        const QDate next(2027, 3, 2);
        const CabinSet business{Cabin::business};
        FareComparison comparison(
            watcher(), {{{next, route, u"SK1"_s}, {business, u"CPH-BKK 2027-03-02 · SK1"_s}},
                        {{leg.date, {u"CPH"_s, u"HND"_s}, u"SK1"_s}, seen(business, u"SK1"_s)},
                        {FareKey::fromText(u"no key"_s), seen(business, u"SK1"_s)}});
        // What another leg's answer has shown in this round is not gone.
        QVERIFY(comparison.compare(leg, {fare(u"SK1"_s, 0, 1, next)}, now).isEmpty());
        QVERIFY(comparison.compare({route, next}, {}, now).isEmpty());
    }

    void offersOfOthers_data() {
        QTest::addColumn<QString>("route");
        QTest::addColumn<QString>("date");
        QTest::addColumn<Cabin>("cabin");
        QTest::addColumn<int>("seats");
        QTest::addColumn<QString>("stops");
        QTest::addColumn<bool>("fits");
        const QString in = u"2027-03-10"_s;
        const Cabin business = Cabin::business;
        const QString one = u"1 stopp (ARN)"_s;
        QTest::newRow("fits") << u"CPH-BKK"_s << in << business << 2 << one << true;
        QTest::newRow("not from the hub") << u"OSL-BKK"_s << in << business << 2 << one << false;
        QTest::newRow("way back") << u"BKK-CPH"_s << u"2027-05-01"_s << business << 2 << one
                                  << true;
        QTest::newRow("way back, out of its window")
            << u"BKK-CPH"_s << in << business << 2 << one << false;
        QTest::newRow("open end") << u"BKK-CPH"_s << u"2029-05-01"_s << business << 2 << one
                                  << true;
        QTest::newRow("first day")
            << u"CPH-BKK"_s << u"2027-03-01"_s << business << 2 << one << true;
        QTest::newRow("last day") << u"CPH-BKK"_s << u"2027-03-31"_s << business << 2 << one
                                  << true;
        QTest::newRow("before") << u"CPH-BKK"_s << u"2027-02-28"_s << business << 2 << one << false;
        QTest::newRow("after") << u"CPH-BKK"_s << u"2027-04-01"_s << business << 2 << one << false;
        QTest::newRow("no date") << u"CPH-BKK"_s << u""_s << business << 2 << one << false;
        QTest::newRow("cabin") << u"CPH-BKK"_s << in << Cabin::first << 2 << one << false;
        QTest::newRow("seats") << u"CPH-BKK"_s << in << business << 1 << one << false;
        QTest::newRow("seats unknown") << u"CPH-BKK"_s << in << business << 0 << one << true;
        QTest::newRow("stops") << u"CPH-BKK"_s << in << business << 2 << u"3 stopp (A)"_s << false;
    }
    void offersOfOthers() {
        QFETCH(QString, route);
        QFETCH(QString, date);
        QFETCH(Cabin, cabin);
        QFETCH(int, seats);
        QFETCH(QString, stops);
        Match match;
        match.key = {DateFmt::dateFromIso(date), Route::fromText(route), u"SK1"_s};
        match.cabin = cabin;
        match.seats = seats;
        match.stops = Stops::fromText(stops);
        Search search = watcher();
        search.returnDateFrom = QDate(2027, 4, 15);
        search.minSeats = 2;
        Search other = watcher();
        other.origin = u"BGO"_s;
        other.destination = u"EWR"_s;
        QTEST(Matching::matchesAWatcher(match, {other, search}), "fits");
        QVERIFY(!Matching::matchesAWatcher(match, {other}));
    }

    void legs() {
        Search search = watcher();
        search.origin = u"OSL,BGO"_s;
        search.destination = u"HND, bkk"_s;
        search.dateTo = QDate(2027, 3, 2);
        search.returnDateFrom = QDate(2027, 3, 9);
        const QDate today(2027, 1, 15);
        const QDate first(2027, 3, 1);
        const QDate back(2027, 3, 9);
        const QList<Leg> legs = Legs::slice(Legs::ofWatcher(search, today), 0);
        QCOMPARE(legs, (QList<Leg>{{u"CPH"_s, u"BKK"_s, first},
                                   {{u"CPH"_s, u"BKK"_s}, first.addDays(1)},
                                   {{u"CPH"_s, u"HND"_s}, first},
                                   {{u"CPH"_s, u"HND"_s}, first.addDays(1)},
                                   {{u"BKK"_s, u"CPH"_s}, back},
                                   {{u"HND"_s, u"CPH"_s}, back}}));
        // The hub among the origins, and codes that come twice, add nothing.
        Search twice = search;
        twice.origin = u"OSL,CPH,osl,BGO"_s;
        twice.destination = u"HND,bkk,HND"_s;
        QCOMPARE(Legs::slice(Legs::ofWatcher(twice, today), 0), legs);
        // Days that have passed are not looked at, and use up nothing of a long window.
        QCOMPARE(Legs::ofWatcher(search, first.addDays(1)).size(), 4);
        QCOMPARE(Legs::ofWatcher(search, back).size(), 2);
        QCOMPARE(Legs::ofWatcher(search, back.addDays(1)).size(), 0);
        Search lasting = search;
        lasting.dateTo = QDate(2029, 1, 1);
        QCOMPARE(Legs::ofWatcher(lasting, QDate(2027, 12, 1)).outbound.last(),
                 QDate(2027, 12, 1).addDays(329));
        search.includePartners = true;
        const auto all = Legs::ofWatcher(search, today);
        QCOMPARE(all.size(), 12);
        QCOMPARE(all[2].route.text(), u"OSL-HND"_s);
        for (qsizetype i = 0; i < all.size(); ++i)
            QVERIFY(all.contains(all[i]));
        QVERIFY(!all.contains({{u"OSL"_s, u"HND"_s}, first, Flow::points}));
        QVERIFY(!all.contains({{u"HND"_s, u"OSL"_s}, first, Flow::award}));

        const auto errorOf = [](const Search& wrong) {
            try {
                Legs::ofWatcher(wrong, QDate(2027, 1, 15));
            } catch (const Err& error) {
                return error.message;
            }
            return QString();
        };
        search.dateFrom = QDate();
        QCOMPARE(errorOf(search), u"SAS-søk krever avreisedato."_s);
        search.destination = u" ,"_s;
        QCOMPARE(errorOf(search), u"Søket mangler destinasjon."_s);
        search.origin.clear();
        QCOMPARE(errorOf(search), u"Søket mangler avreisested."_s);
    }

    void watchedRoutes() {
        Search one = watcher();
        one.origin = u"OSL,BGO"_s;
        one.destination = u"NYC"_s;
        QCOMPARE(texts(Routes::watched({one})), QStringList({u"BGO-NYC"_s, u"OSL-NYC"_s}));
        // The same route twice, the way back, and a city that is searched from the hub.
        Search other = watcher();
        other.origin = u"OSL"_s;
        other.destination = u"nyc, BKK"_s;
        other.includePartners = true;
        other.returnDateTo = QDate(2027, 4, 30);
        QCOMPARE(
            texts(Routes::watched({one, other})),
            QStringList({u"BGO-NYC"_s, u"BKK-CPH"_s, u"CPH-BKK"_s, u"NYC-OSL"_s, u"OSL-NYC"_s}));
        QVERIFY(Routes::watched({}).isEmpty());
    }

    void longWatchersTakeTurns() {
        Search search = watcher();
        search.dateTo = QDate(2027, 3, 30);
        search.returnDateFrom = QDate(2027, 4, 1);
        search.returnDateTo = QDate(2027, 4, 30);
        const QDate today(2027, 1, 15);
        const auto sixty = Legs::ofWatcher(search, today);
        QCOMPARE(sixty.size(), 60);
        const QList<Leg> all = Legs::slice(sixty, 0);
        QCOMPARE(all.size(), 60);
        QCOMPARE(Legs::slice(sixty, 7), all);
        QVERIFY(!Turn(sixty, 7).cursor());
        search.returnDateTo = QDate(2027, 5, 1);
        const auto more = Legs::ofWatcher(search, today);
        QCOMPARE(Legs::slice(more, 0), all);
        const QList<Leg> wrapped = Legs::slice(more, 60);
        QCOMPARE(wrapped, QList<Leg>{more[60]} + all.first(59));
        QCOMPARE(more[60].date, QDate(2027, 5, 1));
        QCOMPARE(Legs::countOfRound(search, today), 60);
        QCOMPARE(Legs::countOfRound(Search(), today), 0);
    }

    void summaries() {
        const PollSummary summary{
            instantFromSeconds(1.8e9), 3, 42, 10, 9, 2, {u"søk 3: x"_s}, {u"søk 4: y"_s}};
        const QString text = QString::fromUtf8(QJsonDocument(summary.toJson()).toJson());
        QVERIFY(text.contains(u"\"soldout\": 2"_s));
        QVERIFY(text.contains(u"\"new\": 9"_s));
        QCOMPARE(PollSummary::fromJson(text), summary);
        QCOMPARE(PollSummary::fromJson(u"{\"at\": \"x\", \"errors\": [1], \"new\": null}"_s),
                 PollSummary());
        QVERIFY(!PollSummary::fromJson(u"[]"_s));
        QVERIFY(!PollSummary::fromJson(u"nonsense"_s));
    }
};

TINDRA_TEST(TestMatching)
#include "test_matching.moc"
