// SPDX-License-Identifier: MIT
#include "airline/PageScripts.h"
#include "airline/SAS.h"
#include "core/Err.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestSAS : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pages() {
        const Site site{u"http://site.localhost:8080"_s, {}, {}, {}};
        const QString page = u"http://site.localhost:8080/book/flights/"
                             u"?search=OW_OSL-BKK-20270301_a1c0i0y0&view=upsell&bookingFlow=points"
                             u"&sortBy=rec,rec&filterBy=all,all"_s;
        const QDate day(2027, 3, 1);
        QCOMPARE(SAS::bookingURL(site, {u"osl"_s, u"bkk"_s}, day), page);
        QCOMPARE(SAS::bookingURL(site, {u"OSL"_s, u""_s}, day), u""_s);
        QCOMPARE(SAS::bookingURL(site, {u"OSL"_s, u"BKK"_s}, {}), u""_s);
        // A code from a response is not trusted to be one.
        QVERIFY(SAS::bookingURL(site, {u"O \"<"_s, u"BKK"_s}, day).contains(u"O%20%22%3C-BKK"_s));
        QCOMPARE(SAS::awardURL(site, {u"osl"_s, u"ewr"_s}, day),
                 u"http://site.localhost:8080/booking/award/flights?origin=OSL&destination=EWR"
                 u"&outboundDate=2027-03-01&adults=1"_s);
    }

    void requestsOfALeg_data() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("ordinary");
        QTest::addColumn<bool>("award");
        QTest::newRow("ordinary") << u"?from=OSL&to=BKK&outDate=20270301"_s << true << false;
        QTest::newRow("any case") << u"?From=osl&TO=bkk&outDate=2027-03-01&x=1"_s << true << false;
        QTest::newRow("award") << u"?origin=OSL&destination=BKK&outboundDate=2027-03-01"_s << false
                               << true;
        QTest::newRow("other date") << u"?from=OSL&to=BKK&outDate=20270302"_s << false << false;
        QTest::newRow("other way") << u"?from=BKK&to=OSL&outDate=20270301"_s << false << false;
        QTest::newRow("no date") << u"?from=OSL&to=BKK"_s << false << false;
        QTest::newRow("the last counts")
            << u"?from=OSL&to=BKK&outDate=20270301&OUTDATE=20270302"_s << false << false;
        QTest::newRow("encoded") << u"?from=%4FSL&to=BKK&outDate=2027%2D03%2D01"_s << true << false;
        QTest::newRow("as only browsers accept")
            << u"?name=a b|{c}&from=OSL&to=BKK&outDate=20270301&x=50%"_s << true << false;
        QTest::newRow("no query") << u""_s << false << false;
    }
    void requestsOfALeg() {
        QFETCH(QString, query);
        QFETCH(bool, ordinary);
        QFETCH(bool, award);
        const QStringList prefixes{u"/api/offers/flights"_s,
                                   u"https://www.example.no/award-api/flights"_s};
        for (const QString& prefix : prefixes) {
            Leg leg{{u"OSL"_s, u"bkk"_s}, QDate(2027, 3, 1)};
            QCOMPARE(SAS::isRequestOf(leg, prefix + query), ordinary);
            leg.flow = Flow::award;
            QCOMPARE(SAS::isRequestOf(leg, prefix + query), award);
        }
    }

    void windows() {
        const QDate today(2027, 1, 15);
        const QDate first(2027, 3, 30);
        const auto days = [first](std::initializer_list<int> later) {
            QList<QDate> dates;
            for (const int day : later)
                dates.append(first.addDays(day));
            return dates;
        };
        const QDate last = first.addDays(3);
        QCOMPARE(SAS::expandDates(first, last, today, 60), days({0, 1, 2, 3}));
        QCOMPARE(SAS::expandDates(first, last, today, 2), days({0, 1}));
        QCOMPARE(SAS::expandDates(first, first.addDays(-30), today, 60), days({0}));
        QCOMPARE(SAS::expandDates(first, {}, today, 60), days({0}));
        QCOMPARE(SAS::expandDates(first, last, first.addDays(2), 60), days({2, 3}));
        QCOMPARE(SAS::expandDates(first, last, first.addDays(4), 60), days({}));
        QVERIFY(SAS::expandDates({}, last, today, 60).isEmpty());
    }

    void travelTimes_data() {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("end");
        QTest::addColumn<QString>("connection");
        QTest::addColumn<int>("minutes");
        const QString start = u"2027-03-01T10:15:00.000Z"_s;
        QTest::newRow("instants") << start << u"2027-03-01T23:20:59.999Z"_s << u"1:00"_s << 785;
        QTest::newRow("zone") << start << u"2027-03-01T12:15:00.000+01:00"_s << u""_s << 60;
        QTest::newRow("no fraction") << start << u"2027-03-01T23:20:00Z"_s << u"1:00"_s << 60;
        QTest::newRow("no zone") << start << u"2027-03-01T23:20:00.000"_s << u""_s << 0;
        QTest::newRow("two days") << start << u"2027-03-03T10:15:00.000Z"_s << u""_s << 0;
        QTest::newRow("just less") << start << u"2027-03-03T10:14:00.000Z"_s << u""_s << 2879;
        QTest::newRow("backwards") << start << u"2027-03-01T09:00:00.000Z"_s << u"13:05"_s << 785;
        QTest::newRow("connection") << u""_s << u""_s << u"13:05"_s << 785;
        QTest::newRow("one number") << u""_s << u""_s << u"13:x"_s << 0;
        QTest::newRow("too long") << u""_s << u""_s << u"48:00"_s << 0;
    }
    void travelTimes() {
        QFETCH(QString, start);
        QFETCH(QString, end);
        QFETCH(QString, connection);
        QFETCH(int, minutes);
        const auto present = [](const QString& text) {
            return text.isEmpty() ? std::nullopt : std::optional(text);
        };
        QCOMPARE(SAS::durationMinutes(present(start), present(end), present(connection)), minutes);
    }

    void whatSatisfies() {
        Fare fare;
        fare.stops.number = 1;
        fare.availability = {{Cabin::economy, 0}, {Cabin::premeco, 1}, {Cabin::business, 3}};
        const CabinSet all{Cabin::economy, Cabin::premeco, Cabin::business, Cabin::first};
        using Seats = CabinNumbers;
        QVERIFY(SAS::matchingCabins(fare, all, 0, 1) ==
                (Seats{{Cabin::premeco, 1}, {Cabin::business, 3}}));
        QVERIFY(SAS::matchingCabins(fare, all, 2, 1) == (Seats{{Cabin::business, 3}}));
        QVERIFY(SAS::matchingCabins(fare, {Cabin::premeco}, 2, 1).isEmpty());
        QVERIFY(SAS::matchingCabins(fare, all, 1, 0).isEmpty());
    }

    void theHubStandsInForLongHaul() {
        for (const auto* code :
             {"HND", "NRT", "BKK", "SIN", "HKG", "PVG", "PEK", "PKX", "ICN", "DEL", "KUL", "SGN"}) {
            const QString destination = QString::fromLatin1(code);
            QCOMPARE(SAS::searchedRoute({u"OSL"_s, destination}, false).text(),
                     u"CPH-"_s + destination);
        }
        QCOMPARE(SAS::hubAwardDests().size(), 12);
        // The way home is searched as it is asked for.
        QCOMPARE(SAS::searchedRoute({u"BKK"_s, u"OSL"_s}, false).text(), u"BKK-OSL"_s);
        QCOMPARE(SAS::searchedRoute({u"OSL"_s, u"BKK"_s}, true).text(), u"OSL-BKK"_s);
        QCOMPARE(SAS::searchedRoute({u"CPH"_s, u"BKK"_s}, false).text(), u"CPH-BKK"_s);
        QCOMPARE(SAS::searchedRoute({u"OSL"_s, u"EWR"_s}, false).text(), u"OSL-EWR"_s);
    }

    void otherSites() {
        QProcessEnvironment environment;
        QCOMPARE(Site::fromEnvironment(environment), Site());
        environment.insert(u"TINDRA_SITE_ORIGIN"_s, u"http://site.localhost:8080/"_s);
        environment.insert(u"TINDRA_IDP_HOST"_s, u"id.localhost"_s);
        environment.insert(u"TINDRA_IDP_DOMAIN"_s, u""_s);
        const Site site = Site::fromEnvironment(environment);
        QCOMPARE(site.origin, u"http://site.localhost:8080"_s);
        QCOMPARE(site.domain, u"site.localhost"_s);
        QCOMPARE(site.identityHost, u"id.localhost"_s);
        QCOMPARE(site.identityDomain, u"id.localhost"_s);
        environment.insert(u"TINDRA_IDP_DOMAIN"_s, u"localhost"_s);
        QCOMPARE(Site::fromEnvironment(environment).identityDomain, u"localhost"_s);
        environment.insert(u"TINDRA_IDP_HOST"_s, u""_s);
        environment.insert(u"TINDRA_IDP_DOMAIN"_s, u""_s);
        QCOMPARE(Site::fromEnvironment(environment).identityDomain, Site().identityDomain);
        environment.insert(u"TINDRA_SITE_DOMAIN"_s, u"other.localhost"_s);
        QVERIFY_EXCEPTION_THROWN(Site::fromEnvironment(environment), Err);
        environment.insert(u"TINDRA_SITE_DOMAIN"_s, u"localhost"_s);
        QCOMPARE(Site::fromEnvironment(environment).domain, u"localhost"_s);
        for (const QString& wrong : {u"site.localhost"_s, u"ftp://a.b"_s, u"https://"_s}) {
            environment.insert(u"TINDRA_SITE_ORIGIN"_s, wrong);
            QVERIFY_EXCEPTION_THROWN(Site::fromEnvironment(environment), Err);
        }
    }

    void onlyTheAirlinesOwnAddressesAreOpened_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("isOpened");
        const auto row = [](const QString& address, bool isOpened) {
            QTest::newRow(qPrintable(address)) << address << isOpened;
        };
        row(u"https://www.sas.no/book/flights/?search=OW_OSL-EWR-20270301"_s, true);
        row(u"https://SAS.no/"_s, true);
        row(u""_s, false);
        row(u"http://www.sas.no/"_s, false);
        row(u"https://www.sas.no:8443/"_s, false);
        row(u"https://kari@www.sas.no/"_s, false);
        row(u"https://www.sas.no@evil.example/"_s, false);
        row(u"https://www.sas.no.evil.example/"_s, false);
        row(u"https://evilsas.no/"_s, false);
        row(u"//www.sas.no/"_s, false);
        row(u"/book"_s, false);
        row(u"javascript:alert('https://www.sas.no/')"_s, false);
        row(u"https://www.sas.no/ %zz\n"_s, false);
    }

    void onlyTheAirlinesOwnAddressesAreOpened() {
        QFETCH(QString, address);
        QTEST(Site().bookingAddress(address).has_value(), "isOpened");
        const Site local{u"http://site.localhost:8080"_s, u"site.localhost"_s, {}, {}};
        QVERIFY(!local.bookingAddress(address));
        QVERIFY(local.bookingAddress(u"http://site.localhost:8080/book"_s));
    }

    void anyTextBecomesALiteral() {
        QCOMPARE(PageScripts::jsString(u"a\"b\\c\nd\u2028é🛫</script>"_s),
                 u"\"a\\\"b\\\\c\\nd\u2028é🛫</script>\""_s);
        QCOMPARE(PageScripts::jsString(u""_s), u"\"\""_s);
    }
};

TINDRA_TEST(TestSAS)
#include "test_sas.moc"
