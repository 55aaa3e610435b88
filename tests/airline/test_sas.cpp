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

    void requestsOfALeg() {
        const auto flows = [](const QString& query) {
            Leg leg{{u"OSL"_s, u"bkk"_s}, QDate(2027, 3, 1)};
            const bool ordinary = SAS::isRequestOf(leg, u"/api/offers/flights"_s + query);
            leg.flow = Flow::award;
            const bool award =
                SAS::isRequestOf(leg, u"https://www.example.no/award-api/flights"_s + query);
            return std::pair(ordinary, award);
        };
        for (const QString& query :
             {u"?from=OSL&to=BKK&outDate=20270301"_s, u"?From=osl&TO=bkk&outDate=2027-03-01&x=1"_s,
              u"?from=%4FSL&to=BKK&outDate=2027%2D03%2D01"_s,
              u"?name=a b|{c}&from=OSL&to=BKK&outDate=20270301&x=50%"_s})
            QVERIFY2(flows(query) == std::pair(true, false), qPrintable(query));
        QVERIFY(flows(u"?origin=OSL&destination=BKK&outboundDate=2027-03-01"_s) ==
                std::pair(false, true));
        for (const QString& query :
             {u"?from=OSL&to=BKK&outDate=20270302"_s, u"?from=BKK&to=OSL&outDate=20270301"_s,
              u"?from=OSL&to=BKK"_s, u"?from=OSL&to=BKK&outDate=20270301&OUTDATE=20270302"_s,
              u""_s})
            QVERIFY2(flows(query) == std::pair(false, false), qPrintable(query));
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

    void travelTimes() {
        const auto minutes = [](const QString& end, const QString& connection) {
            const auto present = [](const QString& text) {
                return text.isEmpty() ? std::nullopt : std::optional(text);
            };
            return SAS::durationMinutes(u"2027-03-01T10:15:00.000Z"_s, present(end),
                                        present(connection));
        };
        QCOMPARE(minutes(u"2027-03-01T23:20:59.999Z"_s, u"1:00"_s), 785);
        QCOMPARE(minutes(u"2027-03-01T12:15:00.000+01:00"_s, {}), 60);
        // Without fractions or a zone it counts as absent.
        QCOMPARE(minutes(u"2027-03-01T23:20:00Z"_s, u"1:00"_s), 60);
        QCOMPARE(minutes(u"2027-03-01T23:20:00.000"_s, {}), 0);
        QCOMPARE(minutes(u"2027-03-03T10:15:00.000Z"_s, {}), 0);
        QCOMPARE(minutes(u"2027-03-03T10:14:00.000Z"_s, {}), 2879);
        QCOMPARE(minutes(u"2027-03-01T09:00:00.000Z"_s, u"13:05"_s), 785);
        QCOMPARE(minutes({}, u"13:05"_s), 785);
        QCOMPARE(minutes({}, u"13:x"_s), 0);
        QCOMPARE(minutes({}, u"48:00"_s), 0);
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
        const auto searched = [](const char* from, const char* to, bool withPartners = false) {
            return SAS::searchedRoute({QString::fromLatin1(from), QString::fromLatin1(to)},
                                      withPartners)
                .text();
        };
        for (const char* code :
             {"HND", "NRT", "BKK", "SIN", "HKG", "PVG", "PEK", "PKX", "ICN", "DEL", "KUL", "SGN"})
            QCOMPARE(searched("OSL", code), u"CPH-"_s + QString::fromLatin1(code));
        QCOMPARE(SAS::hubAwardDests().size(), 12);
        // The way home is searched as it is asked for.
        QCOMPARE(searched("BKK", "OSL"), u"BKK-OSL"_s);
        QCOMPARE(searched("OSL", "BKK", true), u"OSL-BKK"_s);
        QCOMPARE(searched("CPH", "BKK"), u"CPH-BKK"_s);
        QCOMPARE(searched("OSL", "EWR"), u"OSL-EWR"_s);
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

    void onlyTheAirlinesOwnAddressesAreOpened() {
        const Site local{u"http://site.localhost:8080"_s, u"site.localhost"_s, {}, {}};
        QVERIFY(local.bookingAddress(u"http://site.localhost:8080/book"_s));
        QVERIFY(!local.bookingAddress(u"https://www.sas.no/"_s));
        QVERIFY(Site().bookingAddress(u"https://www.sas.no/book/flights/?search=OW_OSL-EWR"_s));
        QVERIFY(Site().bookingAddress(u"https://SAS.no/"_s));
        for (const QString& address :
             {u""_s, u"http://www.sas.no/"_s, u"https://www.sas.no:8443/"_s,
              u"https://kari@www.sas.no/"_s, u"https://www.sas.no@evil.example/"_s,
              u"https://www.sas.no.evil.example/"_s, u"https://evilsas.no/"_s, u"//www.sas.no/"_s,
              u"/book"_s, u"javascript:alert('https://www.sas.no/')"_s,
              u"https://www.sas.no/ %zz\n"_s})
            QVERIFY2(!Site().bookingAddress(address), qPrintable(address));
    }

    void anyTextBecomesALiteral() {
        QCOMPARE(PageScripts::jsString(u"a\"b\\c\nd\u2028é🛫</script>"_s),
                 u"\"a\\\"b\\\\c\\nd\u2028é🛫</script>\""_s);
        QCOMPARE(PageScripts::jsString(u""_s), u"\"\""_s);
    }
};

TINDRA_TEST(TestSAS)
#include "test_sas.moc"
