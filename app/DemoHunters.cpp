// SPDX-License-Identifier: MIT
#include "app/DemoHunters.h"

#include "airline/SAS.h"
#include "app/Demo.h"
#include "core/DateFmt.h"
#include "core/WatcherStore.h"
#include "sharing/Community.h"

#include <QPointer>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto betweenFinds = 4min;
/// Every so many finds, an earlier one is gone.
constexpr int goneEvery = 3;
constexpr int firstFlightNumber = 9000;
constexpr int flightNumbers = 900;

/// What the hunters look for: a watcher of the demo, by its place in the list, and an offer for it.
struct Wish {
    qsizetype watcher;
    const char16_t* origin;
    const char16_t* destination;
    const char16_t* fromCity;
    const char16_t* toCity;
    Cabin cabin;
    int points;
    int minutes;
};
constexpr std::array wishes{
    Wish{1, u"OSL", u"EWR", u"Oslo", u"New York", Cabin::premeco, 45'000, 510},
    Wish{0, u"CPH", u"BKK", u"København", u"Bangkok", Cabin::business, 60'000, 650},
    Wish{2, u"OSL", u"LHR", u"Oslo", u"London", Cabin::economy, 10'000, 145},
    Wish{1, u"BGO", u"EWR", u"Bergen", u"New York", Cabin::business, 60'000, 530},
};

} // namespace

DemoHunters::DemoHunters(Community& community, WatcherStore& watchers, Clock& clock, Site site)
    : m_community(community), m_watchers(watchers), m_clock(clock), m_site(std::move(site)) {}

/// The demo's own, with the windows that they have now.
QList<Search> DemoHunters::watchers() const {
    QList<Search> result = Demo::watchers(m_clock.today());
    const auto stored = m_watchers.listSearches();
    for (Search& watcher : result) {
        const auto same = std::find_if(stored.begin(), stored.end(), [&](const Search& one) {
            return one.origin == watcher.origin && one.destination == watcher.destination &&
                   one.dateFrom.isValid() && one.dateTo.isValid();
        });
        if (same != stored.end())
            watcher = *same;
    }
    return result;
}

Match DemoHunters::find(int number, const QList<Search>& watchers, Instant foundAt,
                        const Site& site) {
    const Wish& wish = wishes[static_cast<size_t>(number) % wishes.size()];
    const Search& watcher = watchers[wish.watcher];
    const QDate first = watcher.dateFrom;
    const auto days = first.daysTo(watcher.dateTo) + 1;
    const QDateTime departs(first.addDays(number % days), QTime(8 + number % 12, 25), Qt::UTC);
    Match match;
    match.fromCity = QString::fromUtf16(wish.fromCity);
    match.toCity = QString::fromUtf16(wish.toCity);
    match.key = {departs.date(),
                 {QString::fromUtf16(wish.origin), QString::fromUtf16(wish.destination)},
                 u"SK%1"_s.arg(firstFlightNumber + number % flightNumbers)};
    const QDateTime arrives = departs.addSecs(wish.minutes * 60);
    match.depart = {departs.date(), departs.time()};
    match.arrive = {arrives.date(), arrives.time()};
    match.stops = Stops();
    match.durationMinutes = wish.minutes;
    match.cabin = wish.cabin;
    match.seats = 2 + number % 3;
    match.points = wish.points;
    match.bookingURL = SAS::bookingURL(site, match.route(), match.travelDate());
    match.foundAt = foundAt;
    return match;
}

QCoro::Task<> DemoHunters::start() {
    const QPointer self(this);
    // From the clock, so that each start of the demo has news.
    int number = static_cast<int>(secondsSince1970(m_clock.now()) / 60) % flightNumbers;
    co_await report(number, 0min);
    if (self)
        co_await report(++number, 50min);
    while (self) {
        co_await m_clock.sleep(betweenFinds);
        if (self)
            co_await report(++number, 0min);
        if (self && number % goneEvery == 0) {
            const Match gone = find(number - 1, watchers(), m_clock.now(), m_site);
            const CabinSet cabins{gone.cabin};
            co_await m_community.reportSoldOut(gone.key, cabins);
        }
    }
}

QCoro::Task<> DemoHunters::report(int number, std::chrono::minutes ago) {
    const QList<Match> finds{find(number, watchers(), m_clock.now() - ago, m_site)};
    co_await m_community.report(finds);
}
