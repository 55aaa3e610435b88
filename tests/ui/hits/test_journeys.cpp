// SPDX-License-Identifier: MIT
#include "tests/support/TestProgram.h"
#include "ui/hits/CardText.h"
#include "ui/hits/Journeys.h"
#include "ui/hits/TripCard.h"

#include <QTest>
#include <QTimeZone>

#include <limits>

using namespace Qt::StringLiterals;
using namespace Journeys;

namespace {

Match offer(const QString& route, const std::function<void(Match&)>& change = {}) {
    Match match;
    match.key = {{2025, 3, 7}, Route::fromText(route), {}};
    match.fromCity = route.left(3).toLower();
    match.toCity = route.right(3).toLower();
    match.points = 60000;
    if (change)
        change(match);
    return match;
}

SoldOut soldOut(const QString& key) {
    return {0, 1, FareKey::fromText(key), {Cabin::business}, u"OSL-EWR 07.03.25 · SK907"_s, {}};
}

Instant at(double seconds) {
    return instantFromSeconds(1'800'000'000 + seconds);
}

bool leavesHome(const Match& match) {
    return match.route().origin == u"OSL";
}

QList<JourneyGroup> group(const QList<Hit>& hits, SortOrder order = SortOrder::region,
                          CardOrder cards = CardOrder::travel) {
    return grouped(hits, order, cards, leavesHome);
}

QStringList titles(const QList<JourneyGroup>& journeys) {
    QStringList titles;
    for (const JourneyGroup& journey : journeys)
        titles.append(journey.title);
    return titles;
}

} // namespace

class TestJourneys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        qputenv("TZ", "Europe/Oslo");
        tzset();
    }

    void codesOfAnOffer() {
        const auto codes = [](const Hit& hit) { return pairCodes(hit).value_or(Route()).text(); };
        QCOMPARE(codes(offer(u"OSL-EWR"_s)), u"OSL-EWR"_s);
        QCOMPARE(codes(offer(u"OSLO-EWR"_s)) + codes(offer({})), u""_s);
        // Of records with the codes first, with the date first, and with no such date.
        QCOMPARE(codes(soldOut(u"OSL-EWR-2025-03-07-SK907"_s)), u"OSL-EWR"_s);
        QCOMPARE(codes(soldOut(u"2025-03-01-OSL-BKK-SK1467,TG955"_s)), u"OSL-BKK"_s);
        QCOMPARE(codes(soldOut(u"2025-13-01-OSL-BKK-1"_s)), u""_s);
    }

    void bothDirectionsAndNeighbouringAirportsMakeOneJourney() {
        QCOMPARE(pairKey({u"JFK"_s, u"OSL"_s}), pairKey({u"OSL"_s, u"EWR"_s}));
        QCOMPARE(pairKeyDirected({u"xyz"_s, u"OSL"_s}), u"XYZ>Oslo"_s);
        const auto journeys = group({offer(u"JFK-OSL"_s), offer(u"OSL-EWR"_s), offer(u"OSL-JFK"_s),
                                     soldOut(u"2025-03-01-OSL-LGA-SK1"_s)});
        QCOMPARE(titles(journeys), QStringList{u"osl ⇄ ewr"_s});
        QCOMPARE(journeys[0].region, Airports::Region::usa);
        QCOMPARE(journeys[0].out.size(), 3);
        QCOMPARE(journeys[0].ret.size(), 1);
    }

    void theAnchorSaysWhichWayIsOut() {
        const Match home = offer(u"EWR-OSL"_s);
        const SoldOut gone = soldOut(u"2025-03-01-BKK-CPH-SK1"_s);
        for (const auto& [hits, title, out] :
             {std::tuple(QList<Hit>{home, home}, u"ewr → osl"_s, 2),
              {{gone, offer(u"CPH-BKK"_s)}, u"cph ⇄ bkk"_s, 1},
              {{gone}, u"BKK → CPH"_s, 1}}) {
            const auto journeys = group(hits);
            QCOMPARE(titles(journeys), QStringList{title});
            QCOMPARE(journeys[0].out.size(), out);
        }
    }

    void whatHasNoCodesIsKeptLast() {
        const auto found = [](double seconds) {
            return [seconds](Match& m) { m.foundAt = at(seconds); };
        };
        const auto journeys = group({offer({}, found(1)), offer(u"OSL"_s, found(2))});
        QCOMPARE(titles(journeys), QStringList{u"Annet"_s});
        QCOMPARE(journeys[0].id, u"annet"_s);
        QCOMPARE(journeys[0].region, Airports::Region::other);
        QCOMPARE(Hits::foundAt(journeys[0].out.first()), at(2));
    }

    void journeysAndCardsAreSorted() {
        const auto with = [](double seconds, int points, QDate date) {
            return [=](Match& m) {
                m.foundAt = at(seconds);
                m.points = points;
                m.key.date = date;
            };
        };
        const QList<Hit> offers{offer(u"OSL-BKK"_s, with(1, 0, {2025, 5, 2})),
                                offer(u"OSL-BKK"_s, with(5, 0, {2025, 5, 3})),
                                offer(u"OSL-BKK"_s, with(2, 0, {2025, 5, 1})),
                                offer(u"OSL-NRT"_s, with(4, 90000, {})),
                                offer(u"OSL-LHR"_s, with(4, 20000, {}))};
        QCOMPARE(titles(group(offers)),
                 QStringList({u"osl → bkk"_s, u"osl → lhr"_s, u"osl → nrt"_s}));
        QCOMPARE(titles(group(offers, SortOrder::cheapest)),
                 QStringList({u"osl → lhr"_s, u"osl → nrt"_s, u"osl → bkk"_s}));
        // Equal journeys stay in the order of their keys, in whatever order they were found.
        QList backwards = offers;
        std::reverse(backwards.begin(), backwards.end());
        QCOMPARE(titles(group(backwards)), titles(group(offers)));

        QCOMPARE(Hits::key(group(offers)[0].out.first()).date, QDate(2025, 5, 1));
        QCOMPARE(Hits::foundAt(group(offers, SortOrder::found, CardOrder::found)[0].out.first()),
                 at(5));

        const auto sections = regionSections(group(offers));
        QCOMPARE(sections.size(), 2);
        QCOMPARE(sections[0].first, Airports::Region::asia);
        QCOMPARE(titles(sections[0].second), QStringList({u"osl → bkk"_s, u"osl → nrt"_s}));
    }

    void filters() {
        const auto of = [](qint64 watcher) {
            return offer(u"OSL-EWR"_s, [=](Match& m) { m.searchId = watcher; });
        };
        const auto goneOf = [](qint64 watcher) {
            SoldOut record = soldOut(u"2025-03-01-OSL-EWR-SK1"_s);
            record.searchId = watcher;
            return record;
        };
        const QList<Hit> hits{of(1), goneOf(2), goneOf(1)};
        const QList<Match> theirs{of(Match::communitySearchId)};
        QVERIFY(filtered(hits, theirs, {}) == hits + QList<Hit>{theirs[0]});
        QVERIFY(filtered(hits, theirs, {1, false}) == QList({hits[0], hits[2]}));
        QVERIFY(filtered(hits, theirs, {1, true}) == QList({hits[0]}));
        QVERIFY(filtered(hits, theirs, {{}, true}) == (QList<Hit>{hits[0], theirs[0]}));
    }

    void figuresOfAJourney() {
        const auto dated = [](QDate date, int points = 0) {
            return offer(u"OSL-EWR"_s, [=](Match& m) {
                m.key.date = date;
                m.points = points;
            });
        };
        JourneyGroup journey;
        QVERIFY(!journey.newest() && !journey.cheapest() && !journey.dateSpan());
        SoldOut gone = soldOut(u"2025-09-09-OSL-EWR-SK1"_s);
        gone.foundAt = at(3);
        journey.out = {dated({2025, 3, 7})};
        journey.ret = {gone};
        QCOMPARE(journey.activeCount(), 1);
        QCOMPARE(journey.soldOutCount(), 1);
        QCOMPARE(journey.newest(), at(3));
        QVERIFY(!journey.cheapest());
        QCOMPARE(journey.dateSpan(), u"07.03"_s);
        journey.ret += QList<Hit>{dated({2025, 4, 1}, 70000), dated({}, 50000)};
        QCOMPARE(journey.cheapest(), 50000);
        QCOMPARE(journey.dateSpan(), u"07.03 – 01.04"_s);
    }

    void foundTexts() {
        // It is 13:00 in Oslo on 15 January 2027.
        const Instant now = instantFromSeconds(1'800'014'400);
        for (const auto& [age, text] : {std::pair(-100.0, u"Funnet akkurat nå"_s),
                                        {59.9, u"Funnet akkurat nå"_s},
                                        {3599.0, u"Funnet for 59 min siden"_s},
                                        {13 * 3600.0, u"Funnet i dag 00:00"_s},
                                        {13 * 3600 + 1.0, u"Funnet 14. jan. 23:59"_s},
                                        {1'800'014'400.0, u"Funnet 1. jan. 01:00"_s}})
            QCOMPARE(CardText::found(now - Ticks(age), now, QDate(2027, 1, 15)), text);
    }

    void ages() {
        const Instant now = at(0);
        constexpr double hour = 3600;
        Match match = offer(u"OSL-EWR"_s);
        const auto freshness = [now](double age) {
            return CardText::freshness(now - Ticks(age), now);
        };
        QCOMPARE(freshness(hour - 1), CardText::Freshness::hour);
        QCOMPARE(freshness(hour), CardText::Freshness::sixHours);
        QCOMPARE(freshness(6 * hour), CardText::Freshness::older);
        match.foundAt = now - Ticks(12 * hour - 1);
        QCOMPARE(CardText::border(match, now), CardText::Border::fresh);
        match.foundAt = now - Ticks(12 * hour);
        QCOMPARE(CardText::border(match, now), CardText::Border::none);
        QCOMPARE(CardText::border(soldOut({}), now), CardText::Border::soldOut);
        match.foundAt = instantFromSeconds(-std::numeric_limits<double>::infinity());
        QVERIFY(CardText::found(match.foundAt, now, {}).startsWith(u"Funnet "));
    }

    void fares() {
        const auto text = [](Cabin cabin, int seats, int points) {
            Match match;
            match.cabin = cabin;
            match.seats = seats;
            match.points = points;
            return CardText::fare(match).replace(QChar::Nbsp, u' ');
        };
        QCOMPARE(text(Cabin::business, 2, 60000), u"Business · 2 seter · 60 000 poeng"_s);
        QCOMPARE(text(Cabin::premeco, 1, 0), u"Premium · 1 sete"_s);
        QCOMPARE(text(Cabin::first, 0, 1), u"First · 0 seter · 1 poeng"_s);
        QCOMPARE(text(Cabin::first, -3, -1), u"First"_s);
    }

    void flights() {
        const auto shown = [](const QString& depart, const QString& arrive) {
            Match match = offer(u"OSL-EWR"_s);
            const QDate travel(2027, 3, 1);
            match.depart = LocalTime::fromText(depart, travel);
            match.arrive =
                LocalTime::fromText(arrive, match.depart.isKnown() ? match.depart.date() : travel);
            const auto from = CardText::departure(match);
            const auto to = CardText::arrival(match);
            return QStringList(
                       {from.time, from.place, to.time, to.place, CardText::dayShift(match)})
                .join(u'|');
        };
        QCOMPARE(shown(u"07.03 11:00"_s, u"07.03 13:10"_s),
                 u"11:00|OSL · 07.03|13:10|EWR · 07.03|"_s);
        QCOMPARE(shown(u"28.02 23:00"_s, u"02.03 06:10"_s),
                 u"23:00|OSL · 28.02|06:10|EWR · 02.03|+2"_s);
        // Over the year's end and the date line.
        QCOMPARE(shown(u"31.12 23:00"_s, u"01.01 06:10"_s),
                 u"23:00|OSL · 31.12|06:10|EWR · 01.01|+1"_s);
        QCOMPARE(shown(u"01.01 08:00"_s, u"31.12 22:10"_s),
                 u"08:00|OSL · 01.01|22:10|EWR · 31.12|−1"_s);
        QCOMPARE(shown(u"07.03 23:00"_s, u"31.02 06:10"_s),
                 u"23:00|OSL · 07.03|31.02 06:10|EWR|"_s);
        QCOMPARE(shown(u"a b c"_s, {}), u"a b c|OSL||EWR|"_s);
    }

    void badges() {
        Match match = offer(u"OSL-EWR"_s);
        const auto badge = [&match](std::optional<Direction> direction) {
            const auto card = TripCard::of(match, direction, true);
            return std::pair(card.badge, card.isHomebound);
        };
        QCOMPARE(badge({}), std::pair(QString(), false));
        QCOMPARE(badge(Direction::out), std::pair(u"Utreise"_s, false));
        QCOMPARE(badge(Direction::home), std::pair(u"Hjemreise"_s, true));
        match.isCommunity = true;
        QCOMPARE(badge(Direction::home), std::pair(u"FELLESSKAP"_s, false));
        const auto gone = TripCard::of(soldOut({}));
        QCOMPARE(gone.badge, u"UTSOLGT"_s);
        QCOMPARE(gone.goneText, u"Business er ikke lenger tilgjengelig"_s);
        QVERIFY(gone.soldOut && !gone.isBookable);
    }

    void whatIsMissingHasAStandIn() {
        Match match;
        QCOMPARE(match.places(), u"? → ?"_s);
        QCOMPARE(CardText::duration(match), QString());
        QCOMPARE(CardText::departure(match), CardText::Endpoint());
        match.key.route = {u"OSL"_s, u"EWR"_s};
        match.toCity = u"New York"_s;
        match.stops = Stops();
        QCOMPARE(match.places(), u"OSL → New York"_s);
        QCOMPARE(CardText::duration(match), u"direkte"_s);
        match.durationMinutes = 455;
        QCOMPARE(CardText::duration(match), u"7t 35m · direkte"_s);
    }
};

TINDRA_TEST(TestJourneys)
#include "test_journeys.moc"
