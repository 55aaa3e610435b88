// SPDX-License-Identifier: MIT
#include "polling/FareComparison.h"

#include "airline/SAS.h"
#include "core/DateFmt.h"
#include "polling/Matching.h"

using namespace Qt::StringLiterals;

namespace {

Match foundMatch(const Search& watcher, const Fare& fare, const QString& cabin, int seats,
                 Instant now) {
    Match match;
    match.searchId = watcher.id;
    match.key = fare.key;
    match.route = fare.route;
    match.fromCity = fare.fromCity;
    match.toCity = fare.toCity;
    match.depart = DateFmt::compact(fare.localDepart);
    match.arrive = DateFmt::compact(fare.localArrive);
    match.stopsText = Matching::stopsText(fare.numberOfStops, fare.stops);
    match.flight = fare.flight;
    match.durationMinutes = fare.durationMinutes;
    match.cabin = cabin;
    match.seats = seats;
    match.points = fare.saverPoints.of(cabin).value_or(0);
    match.travelDate = fare.date;
    match.bookingURL = fare.bookingURL;
    match.foundAt = now;
    return match;
}

Match soldOutMatch(const Search& watcher, const QString& key, const QString& seenLabel,
                   const CabinSet& gone, Instant now) {
    Match match;
    match.searchId = watcher.id;
    match.key = key + u":soldout"_s;
    match.route = seenLabel;
    match.cabin = encodeCabins(gone);
    match.travelDate = key.left(10);
    match.soldOut = true;
    match.foundAt = now;
    return match;
}

} // namespace

FareComparison::FareComparison(Search watcher, QMap<QString, SeenStore::Seen> seen)
    : m_watcher(std::move(watcher)), m_seen(std::move(seen)) {}

QList<FareNews> FareComparison::compare(const Leg& leg, const QList<Fare>& fares, Instant now) {
    m_news.clear();
    m_places.clear();
    for (const Fare& fare : fares)
        add(fare, now);
    const QString prefix = leg.keyPrefix();
    for (auto seen = m_seen.lowerBound(prefix);
         seen != m_seen.end() && seen.key().startsWith(prefix); ++seen)
        addGone(seen.key(), now);
    m_news.removeIf(
        [](const FareNews& news) { return news.found.isEmpty() && !news.soldOut && !news.seen; });
    return std::exchange(m_news, {});
}

FareNews& FareComparison::newsOf(const QString& key) {
    const auto place = m_places.constFind(key);
    if (place != m_places.constEnd())
        return m_news[*place];
    m_places.insert(key, m_news.size());
    m_news.append(FareNews{key, {}, {}, {}, {}});
    return m_news.last();
}

void FareComparison::add(const Fare& fare, Instant now) {
    const auto cabins =
        SAS::matchingCabins(fare, m_watcher.cabins, m_watcher.minSeats, m_watcher.maxStops);
    if (cabins.isEmpty())
        return;
    ++m_satisfied;

    const auto before = m_seen.constFind(fare.key);
    const bool wasSeen = before != m_seen.constEnd();
    const auto earlier = m_round.constFind(fare.key);
    const bool isRepeated = earlier != m_round.constEnd();
    SeenStore::Seen seen{isRepeated ? earlier->cabins : CabinSet(),
                         u"%1 %2 · %3"_s.arg(fare.route, fare.date, fare.flight)};
    FareNews& news = newsOf(fare.key);
    for (auto cabin = cabins.constBegin(); cabin != cabins.constEnd(); ++cabin) {
        if (!seen.cabins.contains(cabin.key()) &&
            !(wasSeen && before->cabins.contains(cabin.key())))
            news.found.append(foundMatch(m_watcher, fare, cabin.key(), *cabin, now));
        seen.cabins.insert(cabin.key());
    }
    const bool isStored = isRepeated ? *earlier == seen : wasSeen && *before == seen;
    if (!isStored)
        news.seen = seen;
    m_round.insert(fare.key, seen);
}

void FareComparison::addGone(const QString& key, Instant now) {
    SeenStore::Seen& before = m_seen[key];
    const auto round = m_round.constFind(key);
    const bool isBack = round != m_round.constEnd();
    CabinSet gone;
    for (const QString& cabin : before.cabins) {
        // A cabin that the user no longer wants vanishes without a word.
        if (m_watcher.cabins.contains(cabin) && !(isBack && round->cabins.contains(cabin)))
            gone.insert(cabin);
    }
    if (gone.isEmpty() && (isBack || before.cabins.isEmpty()))
        return;
    FareNews& news = newsOf(key);
    if (!gone.isEmpty()) {
        news.soldOut = soldOutMatch(m_watcher, key, before.label, gone, now);
        news.gone = gone;
    }
    // The row stays without cabins; when the fare comes back, they are all new again.
    before.cabins = isBack ? before.cabins - gone : CabinSet();
    if (!isBack)
        news.seen = before;
}
