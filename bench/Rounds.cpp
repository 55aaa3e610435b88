// SPDX-License-Identifier: MIT
// What a round does once the airline has answered: reading, matching, storing, announcing.
#include "bench/Results.h"
#include "core/DateFmt.h"
#include "platform/linux/LinuxClock.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "tests/support/FakeLegFetcher.h"
#include "tests/support/FakeNotificationCenter.h"

#include <QEventLoop>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int legs = 60;
constexpr int faresPerLeg = 60;

/// A response of so many flights with seats in two cabins.
QByteArray answer(const QString& date, int count) {
    QString flights;
    for (int i = 0; i < count; ++i) {
        flights += (i ? u","_s : QString()) +
                   uR"("f%1":{"startTimeInLocal":"%2T09:05:00","endTimeInLocal":"%2T11:35:00",
            "startTimeInGmt":"%2T08:05:00.000Z","endTimeInGmt":"%2T10:35:00.000Z","stops":0,
            "origin":{"code":"OSL"},"destination":{"code":"LHR"},"originCity":{"name":"Oslo"},
            "destinationCity":{"name":"London"},
            "segments":[{"marketingCarrier":{"code":"SK"},"flightNumber":%1,
                         "arrivalAirport":{"code":"LHR"}}],
            "cabins":{"BUSINESS":{"f":{"products":{"p":{"productName":"BONUS",
                          "price":{"points":30000},"fares":[{"avlSeats":2}]}}}},
                      "ECONOMY":{"f":{"products":{"p":{"productName":"BONUS",
                          "price":{"points":15000},"fares":[{"avlSeats":4}]}}}}}})"_s.arg(i + 1)
                       .arg(date);
    }
    return (u"{\"outboundFlights\":{"_s + flights + u"}}"_s).toUtf8();
}

/// Notes the longest time that the event loop was kept from turning.
class Heartbeat : public QObject {
public:
    explicit Heartbeat(const Clock& clock) : m_clock(clock), m_last(clock.ticks()) {
        startTimer(0);
    }
    double longest() const { return m_longest; }

protected:
    void timerEvent(QTimerEvent*) override {
        const Ticks now = m_clock.ticks();
        m_longest = std::max(m_longest, (now - m_last).count());
        m_last = now;
    }

private:
    const Clock& m_clock;
    Ticks m_last;
    double m_longest = 0;
};

/// The widest watcher that one could think of: 500 places to 500 others, both ways, for a year.
Result measureWideWatcher() {
    Search watcher;
    QStringList codes;
    for (int i = 0; i < 1000; ++i)
        codes.append(u"%1"_s.arg(i, 3, 32, QChar(u'0')));
    watcher.origin = codes.first(500).join(u',');
    watcher.destination = codes.last(500).join(u',');
    watcher.dateFrom = watcher.returnDateFrom = QDate(2027, 1, 1);
    watcher.dateTo = watcher.returnDateTo = QDate(2027, 12, 31);
    const LinuxClock clock;
    double best = 1e9;
    for (int repeat = 0; repeat < 5; ++repeat) {
        const Ticks start = clock.ticks();
        if (Legs::slice(Legs::ofWatcher(watcher, QDate(2026, 12, 1)), 100'000'000).size() !=
            Legs::perRound)
            qFatal("not all legs of the wide watcher are there");
        best = std::min(best, (clock.ticks() - start).count());
    }
    return {u"the legs of one round, of 500 × 500 places"_s, u"%1 ms"_s.arg(best * 1000, 0, 'f', 1),
            u"≤ 16 ms"_s, best <= 0.016};
}

} // namespace

QList<Result> measureRounds() {
    double best = 1e9;
    double longestStep = 1e9;
    for (int repeat = 0; repeat < 5; ++repeat) {
        const QTemporaryDir dir;
        LinuxClock clock;
        Database database(dir.path(), clock);
        FakeNotificationCenter center;
        Notifier notifier(database, center, clock);
        FakeLegFetcher airline;
        Worker worker(database, airline, notifier, clock);
        Search watcher;
        watcher.origin = u"OSL"_s;
        watcher.destination = u"LHR"_s;
        watcher.cabins = {Cabin::business, Cabin::economy};
        watcher.dateFrom = clock.today().addDays(10);
        watcher.dateTo = clock.today().addDays(10 + legs - 1);
        database.watchers().addSearch(watcher);

        // The first round makes half of the flights known; the second is measured, with an airline
        // that answers at once.
        QHash<QString, QByteArray> bodies;
        airline.answer = [&](const QString&, const QString&, const QString& date) {
            return std::optional(bodies.value(date));
        };
        double longest = 0;
        Ticks began{};
        for (const int flights : {faresPerLeg / 2, faresPerLeg}) {
            for (int day = 0; day < legs; ++day) {
                const QDate date = clock.today().addDays(10 + day);
                bodies.insert(date.toString(u"yyyyMMdd"_s), answer(DateFmt::iso(date), flights));
            }
            QEventLoop loop;
            const auto heartbeat = std::make_unique<Heartbeat>(clock);
            began = clock.ticks();
            worker.pollOnce().then([&](PollSummary summary) {
                if (summary.matches != legs * flights)
                    qFatal("the round found something else than it should");
                loop.quit();
            });
            loop.exec();
            longest = heartbeat->longest();
        }
        best = std::min(best, (clock.ticks() - began).count());
        longestStep = std::min(longestStep, longest);
        if (database.offers().recentMatches(100000).size() != legs * faresPerLeg * 2)
            qFatal("not everything was stored");
    }
    return {{u"reading, matching, storing (a commit a leg) and telling %1 fares, half of them new "
             u"in two "
             u"cabins"_s.arg(legs * faresPerLeg),
             u"%1 ms"_s.arg(best * 1000, 0, 'f', 0), u"≤ 150 ms"_s, best <= 0.150},
            {u"its longest step on the main thread"_s,
             u"%1 ms"_s.arg(longestStep * 1000, 0, 'f', 1), u"≤ 16 ms"_s, longestStep <= 0.016},
            measureWideWatcher()};
}
