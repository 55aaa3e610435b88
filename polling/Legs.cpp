// SPDX-License-Identifier: MIT
#include "polling/Legs.h"

#include "airline/SAS.h"
#include "core/Err.h"

using namespace Qt::StringLiterals;

namespace Legs {

QList<Leg> ofWatcher(const Search& watcher) {
    const QStringList origins = Search::codes(watcher.origin);
    QStringList destinations = Search::codes(watcher.destination);
    destinations.sort();
    if (origins.isEmpty())
        throw Err{u"Søket mangler avreisested."_s};
    if (destinations.isEmpty())
        throw Err{u"Søket mangler destinasjon."_s};
    const QStringList outbound = SAS::expandDates(watcher.dateFrom, watcher.dateTo, datesPerWindow);
    if (outbound.isEmpty())
        throw Err{u"SAS-søk krever avreisedato."_s};
    const QStringList homebound =
        SAS::expandDates(watcher.returnDateFrom, watcher.returnDateTo, datesPerWindow);

    QList<SAS::RoutePair> pairs;
    for (const QString& origin : origins) {
        for (const QString& destination : std::as_const(destinations)) {
            const auto pair = SAS::searchedPair(origin, destination, watcher.includePartners);
            if (!pairs.contains(pair))
                pairs.append(pair);
        }
    }
    QList<Leg> legs;
    legs.reserve(pairs.size() * (outbound.size() + homebound.size()));
    for (const auto& pair : std::as_const(pairs)) {
        for (const QString& date : outbound)
            legs.append({pair.origin, pair.destination, date});
    }
    for (const auto& pair : std::as_const(pairs)) {
        for (const QString& date : homebound)
            legs.append({pair.destination, pair.origin, date});
    }
    return legs;
}

QList<Leg> slice(const QList<Leg>& legs, qsizetype start) {
    if (legs.size() <= perRound)
        return legs;
    QList<Leg> selected;
    for (qsizetype k = 0; k < perRound; ++k)
        selected.append(legs[(start + k) % legs.size()]);
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
