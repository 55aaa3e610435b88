// SPDX-License-Identifier: MIT
#include "core/Cabin.h"
#include "core/DateFmt.h"
#include "core/Match.h"
#include "core/Norwegian.h"
#include "core/Search.h"
#include "tests/support/TestProgram.h"

#include <QDateTime>
#include <QLocale>
#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

class TestRecords : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void codeLists() {
        QCOMPARE(Search::codes(u" ,,\t, "_s), QStringList());
        QCOMPARE(Search::codes(u"osl, bgo,,"_s), QStringList({u"OSL"_s, u"BGO"_s}));
        QCOMPARE(Search::codes(u"CPH,cph"_s), QStringList({u"CPH"_s, u"CPH"_s}));
    }

    void watcherNames() {
        Search search;
        search.origin = u"OSL"_s;
        QCOMPARE(search.displayName(), u"OSL → "_s);
        search.name = u" "_s;
        QCOMPARE(search.displayName(), u" "_s);
        QVERIFY(!search.isRoundTrip());
        search.returnDateTo = QDate(2027, 2, 1);
        QVERIFY(search.isRoundTrip());
    }

    void pastWatchers() {
        const auto isPast = [](const QString& dates) {
            Search search;
            const QStringList parts = dates.split(u'|');
            search.dateFrom = DateFmt::dateFromIso(parts[0]);
            search.dateTo = DateFmt::dateFromIso(parts[1]);
            search.returnDateFrom = DateFmt::dateFromIso(parts[2]);
            search.returnDateTo = DateFmt::dateFromIso(parts[3]);
            return search.isPast({2027, 1, 15});
        };
        for (const QString& dates : {u"2027-01-01|2027-01-14||"_s, u"2027-01-14|||"_s,
                                     u"2027-01-01|2027-01-02|2027-01-03|2027-01-14"_s,
                                     u"2027-01-01|2027-01-02|2027-01-14|"_s})
            QVERIFY2(isPast(dates), qPrintable(dates));
        for (const QString& dates :
             {u"2027-01-01|2027-01-15||"_s, u"2027-01-15|||"_s, u"2027-01-15|2027-01-01||"_s,
              u"2027-01-01|2027-01-02|2027-01-03|2027-01-15"_s,
              u"2027-01-01|2027-01-02||2027-01-14"_s, u"|||"_s, u"|2027-01-02||"_s})
            QVERIFY2(!isPast(dates), qPrintable(dates));
    }

    void wildNumbersAreInstantsOfOurCalendar() {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        for (const double wild : {1e300, infinity, latestSecond + 1})
            QCOMPARE(secondsSince1970(instantFromSeconds(wild)), latestSecond);
        const Instant earliest = instantFromSeconds(-infinity);
        QCOMPARE(QDateTime::fromSecsSinceEpoch(qint64(secondsSince1970(earliest)), Qt::UTC),
                 QDate(1, 1, 1).startOfDay(Qt::UTC));
        QCOMPARE(secondsSince1970(instantFromSeconds(std::nan(""))), 0);
        QCOMPARE(secondsSince1970(instantFromSeconds(-1.5)), -1.5);
        QCOMPARE(DateFmt::ago(instantFromSeconds(-1e300), instantFromSeconds(0)),
                 u"719162 d siden"_s);
    }

    void cabinSets() {
        QCOMPARE(encodeCabins({Cabin::premeco, Cabin::business, Cabin::economy}),
                 u"business,economy,premeco"_s);
        QVERIFY(decodeCabins(u",business,,sofa"_s) == CabinSet{Cabin::business});
        QCOMPARE(encodeCabins({}), u""_s);
        QCOMPARE(cabinLabels({Cabin::premeco, Cabin::first}), u"First, Premium"_s);
        QVERIFY(!cabinFromRaw(u"Business"));
        for (const Cabin cabin : allCabins)
            QVERIFY(cabinFromRaw(rawValue(cabin)) == cabin);
        const CabinSet some{Cabin::economy, Cabin::first};
        QVERIFY((some - CabinSet{Cabin::first}) == CabinSet{Cabin::economy});
        QVERIFY((some & CabinSet{Cabin::business}).isEmpty());
    }

    void fareKeys() {
        for (const auto& [text, route, flights] :
             {std::tuple(u"2027-03-01-OSL-BKK-SK1467,TG955"_s, u"OSL-BKK"_s, u"SK1467,TG955"_s),
              {u"2027-03-01-OSL-BKK-"_s, u"OSL-BKK"_s, {}},
              {u"2027-03-01-A-B-SK-1"_s, u"A-B"_s, u"SK-1"_s},
              {u"2027-02-30-OSL-BKK-SK1"_s, {}, u"2027-02-30-OSL-BKK-SK1"_s},
              // Older records begin with the codes.
              {u"OSL-BKK-2027-03-01"_s, u"OSL-BKK"_s, u"2027-03-01"_s},
              {u"no key"_s, {}, u"no key"_s},
              {u"2027-03-01-OSL"_s, {}, u"OSL"_s}}) {
            const FareKey key = FareKey::fromText(text);
            QCOMPARE(key.route.text(), route);
            QCOMPARE(key.flights, flights);
            QCOMPARE(key.text(), text);
            QVERIFY((OfferId::fromText(text + u"#premeco"_s) == OfferId{key, Cabin::premeco}));
            QVERIFY(!OfferId::fromText(text + u"#sofa"_s));
        }
    }

    void localTimes() {
        const auto at = LocalTime::fromAirline(u"2026-12-31T09:05:00"_s);
        QVERIFY(at == LocalTime(QDate(2026, 12, 31), QTime(9, 5)));
        QCOMPARE(at.text(), u"31.12 09:05"_s);
        QVERIFY(LocalTime::fromAirline(u"2026-12-31 09:05"_s) == at);
        // Records have no year; the nearest such day counts.
        QVERIFY(LocalTime::fromText(u"31.12 09:05"_s, {2027, 1, 2}) == at);
        QVERIFY(LocalTime::fromText(u"01.01 06:10"_s, at.date()).date() == QDate(2027, 1, 1));
        QVERIFY(LocalTime::fromText(u"29.02 06:10"_s, {2028, 2, 28}).date() == QDate(2028, 2, 29));
        for (const QString& odd : {u"2026-03-14"_s, u"20260314TT09:05:00"_s, u"2026-03-14T25:00"_s,
                                   u"2026-02-30T09:05"_s, u"snart"_s, u""_s}) {
            QCOMPARE(LocalTime::fromAirline(odd).text(), odd);
            QVERIFY(!LocalTime::fromAirline(odd).isKnown());
            QVERIFY(LocalTime::fromText(odd, {2026, 3, 14}) == LocalTime::fromAirline(odd));
        }
        QCOMPARE(LocalTime::fromText(u"14.03 09:05"_s, {}).text(), u"14.03 09:05"_s);
    }

    void stopTexts() {
        QCOMPARE(Stops().text(), u"direkte"_s);
        const Stops two{2, {u"CPH"_s, u"BKK"_s}};
        QCOMPARE(two.text(), u"2 stopp (CPH,BKK)"_s);
        QVERIFY(Stops::fromText(two.text()) == two);
        QVERIFY(Stops::fromText(u"direkte"_s) == Stops());
        for (const QString& other : {u"1 stopp"_s, u"stopp 3"_s, u"1 stopp (CPH) kort"_s})
            QCOMPARE(Stops::fromText(other)->text(), other);
        QCOMPARE(Stops::fromText(u"2 via CPH"_s)->number, 2);
        QCOMPARE(Stops::fromText(u"nonstop"_s)->number, 0);
        QVERIFY(!Stops::fromText(u""_s));
    }

    void durations() {
        Match match;
        for (const auto& [minutes, text] :
             {std::pair(59, u"59m"_s), {60, u"1t"_s}, {61, u"1t 1m"_s}, {605, u"10t 5m"_s}}) {
            match.durationMinutes = minutes;
            QCOMPARE(match.durationText(), text);
        }
        for (const int unknown : {0, -5}) {
            match.durationMinutes = unknown;
            QVERIFY(!match.durationText());
        }
    }

    void ago() {
        const Instant now = instantFromSeconds(1.8e9);
        for (const auto& [secondsBefore, text] : {std::pair(-30, u"akkurat nå"_s),
                                                  {59, u"akkurat nå"_s},
                                                  {60, u"1 min siden"_s},
                                                  {3599, u"59 min siden"_s},
                                                  {3600, u"1 t siden"_s},
                                                  {86400, u"1 d siden"_s},
                                                  {864000, u"10 d siden"_s}})
            QCOMPARE(DateFmt::ago(now - std::chrono::seconds(secondsBefore), now), text);
        QCOMPARE(DateFmt::ago(std::nullopt, now), u"ikke sjekket enda"_s);
    }

    void textsAreNorwegianOnEverySystem() {
        QLocale::setDefault(QLocale(QLocale::English));
        QCOMPARE(Norwegian::number(1'234'567), u"1\u00a0234\u00a0567"_s);
        QCOMPARE(Norwegian::decimal(7.5), u"7,5"_s);
        QCOMPARE(Norwegian::decimal(30), u"30"_s);
        QStringList months;
        for (int month = 1; month <= 12; ++month)
            months.append(Norwegian::dayAndMonth({2027, month, 7}));
        QCOMPARE(months.join(u' '), u"7. jan. 7. feb. 7. mar. 7. apr. 7. mai 7. jun. 7. jul. "
                                    u"7. aug. 7. sep. 7. okt. 7. nov. 7. des."_s);
        QCOMPARE(Norwegian::fullDate({2027, 3, 7}), u"søndag 7. mars 2027"_s);
        QCOMPARE(Norwegian::weekday(Qt::Saturday), u"lør."_s);
        QVERIFY((Norwegian::fullDate({}) + Norwegian::dayAndMonth({})).isEmpty());
    }

    void shortForms() {
        const QDate date(2026, 3, 4);
        QCOMPARE(DateFmt::shortDate(date), u"04.03.26"_s);
        QCOMPARE(DateFmt::compact(date), u"20260304"_s);
        QCOMPARE(DateFmt::iso(date), u"2026-03-04"_s);
        QCOMPARE(DateFmt::iso({}) + DateFmt::shortDate({}) + DateFmt::compact({}), u""_s);
        for (const auto* wrong : {u"2027-02-29", u"2027-2-03", u"20270203", u"2027-02-03T", u""})
            QVERIFY(!DateFmt::parseIso(QStringView(wrong)));
        QVERIFY(DateFmt::parseIso(u"2028-02-29") == QDate(2028, 2, 29));
    }
};

TINDRA_TEST(TestRecords)
#include "test_records.moc"
