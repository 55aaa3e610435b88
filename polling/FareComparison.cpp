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

FareComparison::FareComparison(Search watcher, QSet<QString> visited,
                               QMap<QString, Database::Seen> seen, Instant now)
    : m_watcher(std::move(watcher))
    , m_visited(std::move(visited))
    , m_seen(std::move(seen))
    , m_nextSeen(m_seen.constBegin())
    , m_now(now) {}

std::optional<FareNews> FareComparison::add(const Fare& fare) {
    const auto cabins =
        SAS::matchingCabins(fare, m_watcher.cabins, m_watcher.minSeats, m_watcher.maxStops);
    if (cabins.isEmpty())
        return std::nullopt;
    ++m_satisfied;

    const auto before = m_seen.constFind(fare.key);
    const bool wasSeen = before != m_seen.constEnd();
    const auto earlier = m_round.constFind(fare.key);
    const bool isRepeated = earlier != m_round.constEnd();
    Database::Seen now{isRepeated ? earlier->cabins : CabinSet(),
                       u"%1 %2 · %3"_s.arg(fare.route, fare.date, fare.flight)};
    FareNews news;
    news.key = fare.key;
    for (auto cabin = cabins.constBegin(); cabin != cabins.constEnd(); ++cabin) {
        if (!now.cabins.contains(cabin.key()) && !(wasSeen && before->cabins.contains(cabin.key())))
            news.found.append(foundMatch(m_watcher, fare, cabin.key(), *cabin, m_now));
        now.cabins.insert(cabin.key());
    }
    const bool isStored = isRepeated ? *earlier == now : wasSeen && *before == now;
    if (!isStored)
        news.seen = now;
    m_round.insert(fare.key, now);
    if (news.found.isEmpty() && !news.seen)
        return std::nullopt;
    return news;
}

std::optional<FareNews> FareComparison::nextGone() {
    while (m_nextSeen != m_seen.constEnd()) {
        const auto entry = m_nextSeen++;
        if (!isVisited(entry.key()))
            continue;
        if (auto news = goneOf(entry.key(), *entry))
            return news;
    }
    return std::nullopt;
}

std::optional<FareNews> FareComparison::goneOf(const QString& key,
                                               const Database::Seen& before) const {
    const auto round = m_round.constFind(key);
    const bool isBack = round != m_round.constEnd();
    FareNews news;
    news.key = key;
    for (const QString& cabin : before.cabins) {
        // A cabin that the user no longer wants vanishes without a word.
        if (m_watcher.cabins.contains(cabin) && !(isBack && round->cabins.contains(cabin)))
            news.gone.insert(cabin);
    }
    if (!news.gone.isEmpty())
        news.soldOut = soldOutMatch(m_watcher, key, before.label, news.gone, m_now);
    // The row stays without cabins; when the fare comes back, they are all new again.
    if (!isBack && !before.cabins.isEmpty())
        news.seen = Database::Seen{{}, before.label};
    if (!news.soldOut && !news.seen)
        return std::nullopt;
    return news;
}

/// Whether the key's leg, the text up to its fifth "-", was looked up in this round.
bool FareComparison::isVisited(const QString& key) const {
    qsizetype end = -1;
    for (int dashes = 0; dashes < 5; ++dashes) {
        end = key.indexOf(u'-', end + 1);
        if (end < 0)
            return false;
    }
    return m_visited.contains(key.left(end + 1));
}
