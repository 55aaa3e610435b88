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

    void whatWasSeenBefore() {
        const FareKey key{leg.date, route, u"SK1"_s};
        // What is found, what is gone, and what is stored as seen, "-" where that stays as it was.
        const auto news = [&key](const CabinSet& before, const QList<Fare>& fares) {
            FareComparison comparison(watcher(), {{key, seen(before, u"SK1"_s)}});
            const auto all = comparison.compare(leg, fares, now);
            const FareNews one = all.value(0);
            CabinSet found;
            for (const Match& match : one.found)
                found.insert(match.cabin);
            const SoldOut gone = one.soldOut.value_or(SoldOut());
            [&] {
                // All that one fare says is stored together.
                QVERIFY(all.size() <= 1);
                if (!one.soldOut)
                    return;
                const QString label = u"CPH-BKK 2027-03-01 · SK1"_s;
                QVERIFY((gone == SoldOut{0, 7, key, gone.cabins, label, now}));
                // Told once.
                QVERIFY(comparison.compare(leg, fares, now).isEmpty());
            }();
            return QStringList{encodeCabins(found), encodeCabins(gone.cabins),
                               one.seen ? encodeCabins(one.seen->cabins) : u"-"_s};
        };
        const CabinSet both{Cabin::economy, Cabin::business};
        const QString economy = u"economy"_s;
        const QString business = u"business"_s;
        const QString all = u"business,economy"_s;
        QCOMPARE(news(both, {fare(u"SK1"_s, 1, 1)}), QStringList({{}, {}, u"-"_s}));
        QCOMPARE(news(both, {fare(u"SK1"_s, 1, 0), fare(u"SK1"_s, 0, 1)}),
                 QStringList({{}, {}, all}));
        QCOMPARE(news(both, {fare(u"SK1"_s, 4, 0)}), QStringList({{}, business, economy}));
        QCOMPARE(news({Cabin::business}, {fare(u"SK1"_s, 4, 0)}),
                 QStringList({economy, business, economy}));
        QCOMPARE(news(both, {}), QStringList({{}, all, {}}));
        // No longer wanted, gone before, and back again.
        QCOMPARE(news({Cabin::first}, {}), QStringList({{}, {}, {}}));
        QCOMPARE(news({}, {}), QStringList({{}, {}, u"-"_s}));
        QCOMPARE(news({}, {fare(u"SK1"_s, 1, 0)}), QStringList({economy, {}, economy}));
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

    void offersOfOthers() {
        Search search = watcher();
        search.returnDateFrom = QDate(2027, 4, 15);
        search.minSeats = 2;
        Search other = watcher();
        other.origin = u"BGO"_s;
        other.destination = u"EWR"_s;
        Match match;
        match.cabin = Cabin::business;
        match.seats = 2;
        match.stops = Stops{1, {u"ARN"_s}};
        const auto fits = [&](const char* codes, QDate date) {
            match.key = {date, Route::fromText(QString::fromLatin1(codes)), u"SK1"_s};
            return !Matching::matchesAWatcher(match, {other}) &&
                   Matching::matchesAWatcher(match, {other, search});
        };
        for (const QDate date : {QDate(2027, 3, 1), QDate(2027, 3, 10), QDate(2027, 3, 31)}) {
            QVERIFY(fits("CPH-BKK", date));
            QVERIFY(!fits("OSL-BKK", date));
            QVERIFY(!fits("BKK-CPH", date));
        }
        for (const QDate date : {QDate(2027, 2, 28), QDate(2027, 4, 1), QDate()})
            QVERIFY(!fits("CPH-BKK", date));
        // The window home has no end.
        for (const QDate date : {QDate(2027, 4, 15), QDate(2029, 5, 1)})
            QVERIFY(fits("BKK-CPH", date));
        const QDate day(2027, 3, 10);
        match.seats = 1;
        QVERIFY(!fits("CPH-BKK", day));
        // Not known.
        match.seats = 0;
        QVERIFY(fits("CPH-BKK", day));
        match.stops = Stops{3, {}};
        QVERIFY(!fits("CPH-BKK", day));
        match.stops.reset();
        QVERIFY(fits("CPH-BKK", day));
        match.cabin = Cabin::first;
        QVERIFY(!fits("CPH-BKK", day));
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
        Turn rest(sixty, 0);
        rest.beginAt(all[20]);
        QCOMPARE(rest.size(), 40);
        search.returnDateTo = QDate(2027, 5, 1);
        const auto more = Legs::ofWatcher(search, today);
        QCOMPARE(Legs::slice(more, 0), all);
        const QList<Leg> wrapped = Legs::slice(more, 60);
        QCOMPARE(wrapped, QList<Leg>{more[60]} + all.first(59));
        QCOMPARE(more[60].date, QDate(2027, 5, 1));
        // A rotation has its own place to go on.
        Turn whole(more, 0);
        whole.beginAt(all[20]);
        QCOMPARE(whole.size(), 60);
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
