// SPDX-License-Identifier: MIT
#include "polling/Legs.h"

#include "core/Err.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Legs {

Leg All::operator[](qsizetype index) const {
    const qsizetype back = index - pairs.size() * outbound.size();
    if (back < 0) {
        const auto& pair = pairs[index / outbound.size()];
        return {pair.origin, pair.destination, outbound[index % outbound.size()]};
    }
    const auto& pair = pairs[back / homebound.size()];
    return {pair.destination, pair.origin, homebound[back % homebound.size()]};
}

All ofWatcher(const Search& watcher) {
    QStringList origins = Search::codes(watcher.origin);
    QStringList destinations = Search::codes(watcher.destination);
    if (origins.isEmpty())
        throw Err{u"Søket mangler avreisested."_s};
    if (destinations.isEmpty())
        throw Err{u"Søket mangler destinasjon."_s};
    origins.removeDuplicates();
    destinations.removeDuplicates();
    destinations.sort();
    All legs;
    legs.outbound = SAS::expandDates(watcher.dateFrom, watcher.dateTo, datesPerWindow);
    if (legs.outbound.isEmpty())
        throw Err{u"SAS-søk krever avreisedato."_s};
    legs.homebound = SAS::expandDates(watcher.returnDateFrom, watcher.returnDateTo, datesPerWindow);

    legs.pairs.reserve(origins.size() * destinations.size());
    // Two origins have the same pair only where the hub stands in for one of them.
    QSet<QString> fromHub;
    for (const QString& origin : std::as_const(origins)) {
        for (const QString& destination : std::as_const(destinations)) {
            auto pair = SAS::searchedPair(origin, destination, watcher.includePartners);
            if (SAS::hubs().contains(pair.origin)) {
                if (fromHub.contains(destination))
                    continue;
                fromHub.insert(destination);
            }
            legs.pairs.append(std::move(pair));
        }
    }
    return legs;
}

QList<Leg> slice(const All& legs, qsizetype start) {
    const bool fitIntoOne = legs.size() <= perRound;
    QList<Leg> selected;
    selected.reserve(std::min<qsizetype>(legs.size(), perRound));
    for (qsizetype k = 0; k < std::min<qsizetype>(legs.size(), perRound); ++k)
        selected.append(legs[fitIntoOne ? k : (start + k) % legs.size()]);
    return selected;
}

QList<LegGroup> grouped(const QList<Leg>& legs) {
    QList<LegGroup> groups;
    for (const Leg& leg : legs) {
        if (groups.isEmpty() || groups.last().origin != leg.origin ||
            groups.last().destination != leg.destination)
            groups.append({leg.origin, leg.destination, {}});
        groups.last().dates.append(leg.date);
    }
    return groups;
}

QSet<QString> visited(const QList<Leg>& legs) {
    QSet<QString> prefixes;
    for (const Leg& leg : legs)
        prefixes.insert(u"%1-%2-%3-"_s.arg(SAS::dashedDate(leg.date), leg.origin, leg.destination));
    return prefixes;
}

} // namespace Legs
