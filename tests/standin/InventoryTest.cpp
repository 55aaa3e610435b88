// SPDX-License-Identifier: MIT
#include "standin/Inventory.h"
#include "tests/support/TestProgram.h"

#include <QTest>
#include <QTimeZone>

using namespace standin;

namespace {

Leg legOf(const QString& route, int day = 0) {
    return {route.first(3), route.last(3), QDate(2027, 3, 1).addDays(day)};
}

QList<Leg> twentyLegs() {
    QList<Leg> legs;
    for (const QString& route : {QStringLiteral("OSLBKK"), QStringLiteral("CPHHND")}) {
        for (int day = 0; day < 10; ++day)
            legs.append(legOf(route, day));
    }
    return legs;
}

} // namespace

class InventoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everySeedTellsEveryStory();
    void timesFitTogether();
    void sameSeedSameFlights();
};

// A demonstration and the tests built on it need something to find, to lose and to find again,
// whatever the seed.
void InventoryTest::everySeedTellsEveryStory() {
    int flights = 0;
    int withSeats = 0;
    for (quint64 seed = 1; seed <= 40; ++seed) {
        const Inventory inventory(seed);
        QMap<Cabin, int> open;
        int appeared = 0;
        int shrank = 0;
        int gone = 0;
        int back = 0;
        for (const Leg& at : twentyLegs()) {
            const QList<Flight> first = inventory.flights(at, 1);
            const QList<Flight> second = inventory.flights(at, 2);
            const QList<Flight> third = inventory.flights(at, 3);
            QVERIFY(first.size() >= 2 && first.size() <= 5);
            QCOMPARE(second.size(), first.size());
            for (qsizetype i = 0; i < first.size(); ++i) {
                QCOMPARE(second[i].segments.first().number, first[i].segments.first().number);
                ++flights;
                withSeats += first[i].hasSeats();
                for (auto it = first[i].cabins.cbegin(); it != first[i].cabins.cend(); ++it) {
                    const int later = second[i].cabins[it.key()].seats;
                    open[it.key()] += it->seats > 0;
                    appeared += it->seats == 0 && later > 0;
                    shrank += later > 0 && later < it->seats;
                    gone += it->seats > 0 && later == 0;
                    back += it->seats > 0 && later == 0 && third[i].cabins[it.key()].seats > 0;
                }
            }
        }
        const QByteArray where = "seed " + QByteArray::number(seed);
        QVERIFY2(open[Cabin::Economy] > 0 && open[Cabin::Business] > 0, where.constData());
        QVERIFY2(appeared > 0 && gone > 0, where.constData());
        if (seed == 1) // the one that the programs use by default
            QVERIFY(shrank > 0 && back > 0);
    }
    const double share = double(withSeats) / flights;
    QVERIFY2(share > 0.25 && share < 0.45, QByteArray::number(share).constData());
}

void InventoryTest::timesFitTogether() {
    const Inventory inventory(1);
    for (const QString& route : {QStringLiteral("OSLCPH"), QStringLiteral("BGOBKK"),
                                 QStringLiteral("EWRARN"), QStringLiteral("QQQOSL")}) {
        for (const Flight& flight : inventory.flights(legOf(route), 1)) {
            QCOMPARE(flight.segments.first().departs.date(), QDate(2027, 3, 1));
            QCOMPARE(flight.segments.first().origin, route.first(3));
            QCOMPARE(flight.segments.last().destination, route.last(3));
            for (qsizetype i = 0; i < flight.segments.size(); ++i) {
                const Segment& part = flight.segments[i];
                QVERIFY(part.departs < part.arrives);
                QVERIFY(i == 0 || flight.segments[i - 1].arrives.secsTo(part.departs) >= 55 * 60);
                QVERIFY(i == 0 || flight.segments[i - 1].destination == part.origin);
            }
            const QDateTime start = flight.segments.first().departs;
            QVERIFY(start.secsTo(flight.segments.last().arrives) < 47 * 3600);
        }
    }
    // Norway is an hour ahead of GMT in winter and two in summer, Thailand always seven.
    const auto offsets = [&inventory](int month) {
        const Leg at{QStringLiteral("OSL"), QStringLiteral("BKK"), QDate(2027, month, 10)};
        const Flight flight = inventory.flights(at, 1).first();
        return std::pair{flight.segments.first().departs.offsetFromUtc() / 3600,
                         flight.segments.last().arrives.offsetFromUtc() / 3600};
    };
    QCOMPARE(offsets(1), std::pair(1, 7));
    QCOMPARE(offsets(7), std::pair(2, 7));
}

void InventoryTest::sameSeedSameFlights() {
    const auto fingerprint = [](quint64 seed) {
        QStringList words;
        for (const Leg& at : twentyLegs()) {
            for (const Flight& flight : Inventory(seed).flights(at, 1)) {
                words.append(QString::number(flight.segments.first().number));
                for (const AwardCabin& cabin : flight.cabins)
                    words.append(QString::number(cabin.seats));
            }
        }
        return words;
    };
    QCOMPARE(fingerprint(7), fingerprint(7));
    QVERIFY(fingerprint(7) != fingerprint(8));
}

TINDRA_TEST(InventoryTest)
#include "InventoryTest.moc"
