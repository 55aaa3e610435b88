// SPDX-License-Identifier: MIT
#include "core/Err.h"
#include "polling/FareComparison.h"
#include "polling/Legs.h"
#include "polling/Matching.h"
#include "polling/PollSummary.h"

#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Search watcher() {
    Search search;
    search.id = 7;
    search.origin = u"OSL"_s;
    search.destination = u"BKK"_s;
    search.cabins = {u"economy"_s, u"business"_s};
    search.dateFrom = u"2027-03-01"_s;
    search.dateTo = u"2027-03-31"_s;
    return search;
}

Fare fare(const QString& flight, int economy, int business, const QString& date = u"2027-03-01"_s) {
    Fare fare;
    fare.origin = u"CPH"_s;
    fare.destination = u"BKK"_s;
    fare.route = u"CPH-BKK"_s;
    fare.fromCity = u"København"_s;
    fare.toCity = u"Bangkok"_s;
    fare.date = date;
    fare.flight = flight;
    fare.numberOfStops = 1;
    fare.stops = QStringList{u"ARN"_s};
    fare.localDepart = date + u"T09:05:00"_s;
    fare.localArrive = u"2027-03-02T06:10:00"_s;
    fare.durationMinutes = 785;
    fare.availability = {{Cabin::economy, economy},
                         {Cabin::premeco, 0},
                         {Cabin::business, business},
                         {Cabin::first, 0}};
    fare.saverPoints = {{Cabin::business, 75000}};
    fare.bookingURL = u"https://site.example/"_s;
    fare.key = date + u"-CPH-BKK-"_s + flight;
    return fare;
}

const QSet<QString> visited{u"2027-03-01-CPH-BKK-"_s};
const Instant now = instantFromSeconds(1.8e9);
using Seen = QMap<QString, Database::Seen>;

Database::Seen seen(const CabinSet& cabins, const QString& flight) {
    return {cabins, u"CPH-BKK 2027-03-01 · "_s + flight};
}

} // namespace

class TestMatching : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFirstFindInTwoCabins() {
        FareComparison comparison(watcher(), visited, {}, now);
        const auto news = comparison.add(fare(u"SK1,SK2"_s, 4, 2));
        QVERIFY(news);
        QCOMPARE(news->found.size(), 2);
        Match match;
        match.searchId = 7;
        match.key = u"2027-03-01-CPH-BKK-SK1,SK2"_s;
        match.route = u"CPH-BKK"_s;
        match.fromCity = u"København"_s;
        match.toCity = u"Bangkok"_s;
        match.depart = u"01.03 09:05"_s;
        match.arrive = u"02.03 06:10"_s;
        match.stopsText = u"1 stopp (ARN)"_s;
        match.flight = u"SK1,SK2"_s;
        match.durationMinutes = 785;
        match.cabin = u"business"_s;
        match.seats = 2;
        match.points = 75000;
        match.travelDate = u"2027-03-01"_s;
        match.bookingURL = u"https://site.example/"_s;
        match.foundAt = now;
        QCOMPARE(news->found[0], match);
        QCOMPARE(news->found[1].cabin, u"economy"_s);
        QCOMPARE(news->found[1].points, 0);
        QCOMPARE(news->seen, seen({u"economy"_s, u"business"_s}, u"SK1,SK2"_s));
        QVERIFY(!news->soldOut);

        // The same fare again in this round is no news.
        QVERIFY(!comparison.add(fare(u"SK1,SK2"_s, 4, 2)));
        QVERIFY(!comparison.add(fare(u"SK3"_s, 0, 0)));
        QCOMPARE(comparison.satisfied(), 2);
        QVERIFY(!comparison.nextGone());
    }

    void knownFaresStaySilent() {
        FareComparison comparison(
            watcher(), visited,
            {{u"2027-03-01-CPH-BKK-SK1"_s, seen({u"economy"_s, u"business"_s}, u"SK1"_s)}}, now);
        QVERIFY(!comparison.add(fare(u"SK1"_s, 1, 1)));
        QCOMPARE(comparison.satisfied(), 1);
        QVERIFY(!comparison.nextGone());
    }

    void aFareInPiecesKeepsAllItsCabins() {
        const QString key = u"2027-03-01-CPH-BKK-SK1"_s;
        FareComparison comparison(watcher(), visited,
                                  {{key, seen({u"economy"_s, u"business"_s}, u"SK1"_s)}}, now);
        const auto first = comparison.add(fare(u"SK1"_s, 1, 0));
        QCOMPARE(first->seen->cabins, CabinSet{u"economy"_s});
        const auto second = comparison.add(fare(u"SK1"_s, 0, 1));
        QVERIFY(second && second->found.isEmpty());
        QCOMPARE(second->seen->cabins, (CabinSet{u"economy"_s, u"business"_s}));
        QVERIFY(!comparison.nextGone());
    }

    void soldOutInPart() {
        FareComparison comparison(
            watcher(), visited,
            {{u"2027-03-01-CPH-BKK-SK1"_s, seen({u"economy"_s, u"business"_s}, u"SK1"_s)}}, now);
        QCOMPARE(comparison.add(fare(u"SK1"_s, 4, 0))->seen, seen({u"economy"_s}, u"SK1"_s));
        const auto gone = comparison.nextGone();
        QVERIFY(gone);
        QCOMPARE(gone->gone, CabinSet{u"business"_s});
        QVERIFY(!gone->seen);
        Match record;
        record.searchId = 7;
        record.key = u"2027-03-01-CPH-BKK-SK1:soldout"_s;
        record.route = u"CPH-BKK 2027-03-01 · SK1"_s;
        record.cabin = u"business"_s;
        record.travelDate = u"2027-03-01"_s;
        record.soldOut = true;
        record.foundAt = now;
        QCOMPARE(gone->soldOut, record);
        QVERIFY(!comparison.nextGone());
    }

    void onlyLegsOfThisRoundCanSellOut() {
        FareComparison comparison(
            watcher(), visited,
            {{u"2027-03-02-CPH-BKK-SK1"_s, seen({u"business"_s}, u"SK1"_s)},
             {u"2027-03-01-CPH-HND-SK1"_s, seen({u"business"_s}, u"SK1"_s)},
             {u"no key"_s, seen({u"business"_s}, u"SK1"_s)},
             {u"2027-03-01-CPH-BKK-SK9"_s, seen({u"business"_s, u"economy"_s}, u"SK9"_s)}},
            now);
        const auto gone = comparison.nextGone();
        QCOMPARE(gone->key, u"2027-03-01-CPH-BKK-SK9"_s);
        QCOMPARE(gone->soldOut->cabin, u"business,economy"_s);
        QCOMPARE(gone->seen, seen({}, u"SK9"_s));
        QVERIFY(!comparison.nextGone());
    }

    void cabinsThatAreNoLongerWantedVanishSilently() {
        FareComparison comparison(watcher(), visited,
                                  {{u"2027-03-01-CPH-BKK-SK1"_s, seen({u"first"_s}, u"SK1"_s)},
                                   {u"2027-03-01-CPH-BKK-SK2"_s, seen({}, u"SK2"_s)}},
                                  now);
        const auto gone = comparison.nextGone();
        QVERIFY(gone && !gone->soldOut);
        QCOMPARE(gone->seen, seen({}, u"SK1"_s));
        QVERIFY(!comparison.nextGone());
    }

    void stopTexts() {
        QCOMPARE(Matching::stopsText(0, {}), u"direkte"_s);
        QCOMPARE(Matching::stopsText(2, {u"CPH"_s, u"BKK"_s}), u"2 stopp (CPH,BKK)"_s);
        QCOMPARE(Matching::stopsCount(u"2 stopp (CPH,BKK)"_s), 2);
        QCOMPARE(Matching::stopsCount(u"direkte"_s), 0);
        QCOMPARE(Matching::stopsCount(u""_s), 0);
        QCOMPARE(Matching::stopsCount(u"stopp 3"_s), 0);
    }

    void offersOfOthers_data() {
        QTest::addColumn<QString>("route");
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("cabin");
        QTest::addColumn<int>("seats");
        QTest::addColumn<QString>("stops");
        QTest::addColumn<bool>("fits");
        const QString in = u"2027-03-10"_s;
        const QString business = u"business"_s;
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
        QTest::newRow("cabin") << u"CPH-BKK"_s << in << u"first"_s << 2 << one << false;
        QTest::newRow("seats") << u"CPH-BKK"_s << in << business << 1 << one << false;
        QTest::newRow("seats unknown") << u"CPH-BKK"_s << in << business << 0 << one << true;
        QTest::newRow("stops") << u"CPH-BKK"_s << in << business << 2 << u"3 stopp (A)"_s << false;
    }
    void offersOfOthers() {
        QFETCH(QString, route);
        QFETCH(QString, date);
        QFETCH(QString, cabin);
        QFETCH(int, seats);
        QFETCH(QString, stops);
        Match match;
        match.route = route;
        match.travelDate = date;
        match.cabin = cabin;
        match.seats = seats;
        match.stopsText = stops;
        Search search = watcher();
        search.returnDateFrom = u"2027-04-15"_s;
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
        search.dateTo = u"2027-03-02"_s;
        search.returnDateFrom = u"2027-03-09"_s;
        const QList<Leg> legs = Legs::slice(Legs::ofWatcher(search), 0);
        QCOMPARE(legs, (QList<Leg>{{u"CPH"_s, u"BKK"_s, u"20270301"_s},
                                   {u"CPH"_s, u"BKK"_s, u"20270302"_s},
                                   {u"CPH"_s, u"HND"_s, u"20270301"_s},
                                   {u"CPH"_s, u"HND"_s, u"20270302"_s},
                                   {u"BKK"_s, u"CPH"_s, u"20270309"_s},
                                   {u"HND"_s, u"CPH"_s, u"20270309"_s}}));
        QCOMPARE(Legs::grouped(legs.first(3)),
                 (QList<LegGroup>{{u"CPH"_s, u"BKK"_s, {u"20270301"_s, u"20270302"_s}},
                                  {u"CPH"_s, u"HND"_s, {u"20270301"_s}}}));
        QVERIFY(Legs::visited(legs).contains(u"2027-03-09-HND-CPH-"_s));
        // The hub among the origins, and codes that come twice, add nothing.
        Search twice = search;
        twice.origin = u"OSL,CPH,osl,BGO"_s;
        twice.destination = u"HND,bkk,HND"_s;
        QCOMPARE(Legs::slice(Legs::ofWatcher(twice), 0), legs);
        search.includePartners = true;
        QCOMPARE(Legs::ofWatcher(search).size(), 12);
        QCOMPARE(Legs::ofWatcher(search)[2].origin + Legs::ofWatcher(search)[2].destination,
                 u"OSLHND"_s);

        const auto errorOf = [](const Search& wrong) {
            try {
                Legs::ofWatcher(wrong);
            } catch (const Err& error) {
                return error.message;
            }
            return QString();
        };
        search.dateFrom.clear();
        QCOMPARE(errorOf(search), u"SAS-søk krever avreisedato."_s);
        search.destination = u" ,"_s;
        QCOMPARE(errorOf(search), u"Søket mangler destinasjon."_s);
        search.origin.clear();
        QCOMPARE(errorOf(search), u"Søket mangler avreisested."_s);
    }

    void longWatchersTakeTurns() {
        Search search = watcher();
        search.dateTo = u"2027-03-30"_s;
        search.returnDateFrom = u"2027-04-01"_s;
        search.returnDateTo = u"2027-04-30"_s;
        const auto sixty = Legs::ofWatcher(search);
        QCOMPARE(sixty.size(), 60);
        const QList<Leg> all = Legs::slice(sixty, 0);
        QCOMPARE(all.size(), 60);
        QCOMPARE(Legs::slice(sixty, 7), all);
        search.returnDateTo = u"2027-05-01"_s;
        const auto more = Legs::ofWatcher(search);
        QCOMPARE(Legs::slice(more, 0), all);
        const QList<Leg> wrapped = Legs::slice(more, 60);
        QCOMPARE(wrapped, QList<Leg>{more[60]} + all.first(59));
        QCOMPARE(more[60].date, u"20270501"_s);
        QCOMPARE(Legs::grouped(wrapped).size(), 3);
    }

    void summaries() {
        const PollSummary summary{instantFromSeconds(1.8e9), 3, 42, 10, 9, 2, {u"søk 3: x"_s}};
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

QTEST_GUILESS_MAIN(TestMatching)
#include "test_matching.moc"
