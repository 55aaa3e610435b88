// SPDX-License-Identifier: MIT
#include "polling/FareComparison.h"

#include "airline/SAS.h"
#include "core/DateFmt.h"

using namespace Qt::StringLiterals;

namespace {

Match foundMatch(const Search& watcher, const Fare& fare, Cabin cabin, int seats, Instant now) {
    Match match;
    match.searchId = watcher.id;
    match.key = fare.key;
    match.fromCity = fare.fromCity;
    match.toCity = fare.toCity;
    match.depart = fare.localDepart;
    match.arrive = fare.localArrive;
    match.stops = fare.stops;
    match.durationMinutes = fare.durationMinutes;
    match.cabin = cabin;
    match.seats = seats;
    match.points = fare.saverPoints[cabin].value_or(0);
    match.bookingURL = fare.bookingURL;
    match.foundAt = now;
    return match;
}

QString labelOf(const FareKey& key) {
    return u"%1 %2 · %3"_s.arg(key.route.text(), DateFmt::iso(key.date), key.flights);
}

} // namespace

FareComparison::FareComparison(Search watcher, QMap<FareKey, SeenStore::Seen> seen)
    : m_watcher(std::move(watcher)), m_seen(std::move(seen)) {}

QList<FareNews> FareComparison::compare(const Leg& leg, const QList<Fare>& fares, Instant now) {
    m_news.clear();
    m_places.clear();
    for (const Fare& fare : fares)
        add(fare, now);
    const auto isOfLeg = [&leg](const FareKey& key) {
        return key.date == leg.date && key.route == leg.route;
    };
    for (auto seen = m_seen.lowerBound({leg.date, leg.route, {}});
         seen != m_seen.end() && isOfLeg(seen.key()); ++seen)
        addGone(seen.key(), now);
    m_news.removeIf(
        [](const FareNews& news) { return news.found.isEmpty() && !news.soldOut && !news.seen; });
    return std::exchange(m_news, {});
}

FareNews& FareComparison::newsOf(const FareKey& key) {
    const auto place = m_places.constFind(key);
    if (place != m_places.constEnd())
        return m_news[*place];
    m_places.insert(key, m_news.size());
    m_news.append(FareNews{key, {}, {}, {}});
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
    SeenStore::Seen seen{isRepeated ? earlier->cabins : CabinSet(), labelOf(fare.key)};
    FareNews& news = newsOf(fare.key);
    for (const Cabin cabin : m_watcher.cabins) {
        const auto seats = cabins[cabin];
        if (!seats)
            continue;
        if (!seen.cabins.contains(cabin) && !(wasSeen && before->cabins.contains(cabin)))
            news.found.append(foundMatch(m_watcher, fare, cabin, *seats, now));
        seen.cabins.insert(cabin);
    }
    const bool isStored = isRepeated ? *earlier == seen : wasSeen && *before == seen;
    if (!isStored)
        news.seen = seen;
    m_round.insert(fare.key, seen);
}

void FareComparison::addGone(const FareKey& key, Instant now) {
    SeenStore::Seen& before = m_seen[key];
    const auto round = m_round.constFind(key);
    const bool isBack = round != m_round.constEnd();
    // A cabin that the user no longer wants vanishes without a word.
    const CabinSet gone =
        (before.cabins & m_watcher.cabins) - (isBack ? round->cabins : CabinSet());
    if (gone.isEmpty() && (isBack || before.cabins.isEmpty()))
        return;
    FareNews& news = newsOf(key);
    if (!gone.isEmpty())
        news.soldOut = SoldOut{0, m_watcher.id, key, gone, before.label, now};
    // The row stays without cabins; when the fare comes back, they are all new again.
    before.cabins = isBack ? before.cabins - gone : CabinSet();
    if (!isBack)
        news.seen = before;
}
