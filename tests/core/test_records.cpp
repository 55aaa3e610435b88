// SPDX-License-Identifier: MIT
#include "core/Cabin.h"
#include "core/DateFmt.h"
#include "core/Match.h"
#include "core/Norwegian.h"
#include "core/Search.h"

#include <QDateTime>
#include <QLocale>
#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

class TestRecords : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void codeLists_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("codes");
        QTest::newRow("empty") << u""_s << QStringList{};
        QTest::newRow("commas and blanks") << u" ,,\t, "_s << QStringList{};
        QTest::newRow("as typed") << u"osl, bgo,,"_s << QStringList{u"OSL"_s, u"BGO"_s};
        QTest::newRow("duplicates stay") << u"CPH,cph"_s << QStringList{u"CPH"_s, u"CPH"_s};
    }
    void codeLists() {
        QFETCH(QString, text);
        QFETCH(QStringList, codes);
        QCOMPARE(Search::codes(text), codes);
    }

    void watcherNames() {
        Search search;
        search.origin = u"OSL"_s;
        QCOMPARE(search.displayName(), u"OSL → "_s);
        search.name = u" "_s;
        QCOMPARE(search.displayName(), u" "_s);
        QVERIFY(!search.isRoundTrip());
        search.returnDateTo = u"2027-02-01"_s;
        QVERIFY(search.isRoundTrip());
    }

    void pastWatchers_data() {
        QTest::addColumn<QString>("dates");
        QTest::addColumn<bool>("isPast");
        // Today is the fifteenth of January 2027.
        QTest::newRow("one way") << u"2027-01-01|2027-01-14||"_s << true;
        QTest::newRow("ends today") << u"2027-01-01|2027-01-15||"_s << false;
        QTest::newRow("without an end") << u"2027-01-14|||"_s << true;
        QTest::newRow("today alone") << u"2027-01-15|||"_s << false;
        QTest::newRow("ends before it starts") << u"2027-01-15|2027-01-01||"_s << false;
        QTest::newRow("home too") << u"2027-01-01|2027-01-02|2027-01-03|2027-01-14"_s << true;
        QTest::newRow("home is to come")
            << u"2027-01-01|2027-01-02|2027-01-03|2027-01-15"_s << false;
        QTest::newRow("home on one day") << u"2027-01-01|2027-01-02|2027-01-14|"_s << true;
        QTest::newRow("home from when") << u"2027-01-01|2027-01-02||2027-01-14"_s << false;
        QTest::newRow("no date") << u"|||"_s << false;
        QTest::newRow("no start") << u"|2027-01-02||"_s << false;
        QTest::newRow("no such end") << u"2027-01-01|2026-02-30||"_s << false;
        QTest::newRow("words") << u"i går|||"_s << false;
    }
    void pastWatchers() {
        QFETCH(QString, dates);
        Search search;
        const QStringList parts = dates.split(u'|');
        search.dateFrom = parts[0];
        search.dateTo = parts[1];
        search.returnDateFrom = parts[2];
        search.returnDateTo = parts[3];
        QTEST(search.isPast({2027, 1, 15}), "isPast");
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
        QCOMPARE(encodeCabins({u"premeco"_s, u"business"_s}), u"business,premeco"_s);
        QCOMPARE(decodeCabins(u",business,,"_s), CabinSet{u"business"_s});
        QCOMPARE(encodeCabins({}), u""_s);
        QCOMPARE(cabinLabel(u"premeco"_s), u"Premium"_s);
        QCOMPARE(cabinLabel(u"PREMIUM"_s), u"PREMIUM"_s);
        QCOMPARE(cabinLabels(u"premeco,,sofa"_s), u"Premium, sofa"_s);
        QVERIFY(!cabinFromRaw(u"Business"));
        for (const Cabin cabin : allCabins)
            QVERIFY(cabinFromRaw(rawValue(cabin)) == cabin);
    }

    void durations_data() {
        QTest::addColumn<int>("minutes");
        QTest::addColumn<QString>("text");
        QTest::newRow("unknown") << 0 << QString();
        QTest::newRow("negative") << -5 << QString();
        QTest::newRow("minutes") << 59 << u"59m"_s;
        QTest::newRow("an hour") << 60 << u"1t"_s;
        QTest::newRow("a minute more") << 61 << u"1t 1m"_s;
        QTest::newRow("long") << 605 << u"10t 5m"_s;
    }
    void durations() {
        QFETCH(int, minutes);
        QFETCH(QString, text);
        Match match;
        match.durationMinutes = minutes;
        QCOMPARE(match.durationText().value_or(QString()), text);
        QCOMPARE(match.durationText().has_value(), !text.isEmpty());
    }

    void ago_data() {
        QTest::addColumn<double>("secondsBefore");
        QTest::addColumn<QString>("text");
        QTest::newRow("future") << -30.0 << u"akkurat nå"_s;
        QTest::newRow("59 s") << 59.0 << u"akkurat nå"_s;
        QTest::newRow("60 s") << 60.0 << u"1 min siden"_s;
        QTest::newRow("just under an hour") << 3599.0 << u"59 min siden"_s;
        QTest::newRow("an hour") << 3600.0 << u"1 t siden"_s;
        QTest::newRow("a day") << 86400.0 << u"1 d siden"_s;
        QTest::newRow("10 days") << 864000.0 << u"10 d siden"_s;
    }
    void ago() {
        QFETCH(double, secondsBefore);
        QFETCH(QString, text);
        const Instant now = instantFromSeconds(1.8e9);
        QCOMPARE(DateFmt::ago(now - std::chrono::duration<double>(secondsBefore), now), text);
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
        QCOMPARE(DateFmt::shortDate(u"2026-03-14"_s), u"14.03.26"_s);
        QCOMPARE(DateFmt::shortDate(u"20260314"_s), u"20260314"_s);
        QCOMPARE(DateFmt::shortDate(u""_s), u""_s);
        QCOMPARE(DateFmt::compact(u"2026-03-14T09:05:00"_s), u"14.03 09:05"_s);
        QCOMPARE(DateFmt::compact(u"2026-03-14 09:05"_s), u"14.03 09:05"_s);
        QCOMPARE(DateFmt::compact(u"2026-03-14"_s), u"2026-03-14"_s);
        QCOMPARE(DateFmt::compact(u"20260314TT09:05:00"_s), u"20260314TT09:05:00"_s);
        QVERIFY(!DateFmt::parseIso(u"2027-02-29"_s));
        QCOMPARE(DateFmt::parseIso(u"2028-02-29"_s), QDate(2028, 2, 29));
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "test_records.moc"
