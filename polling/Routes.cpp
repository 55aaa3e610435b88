// SPDX-License-Identifier: MIT
#include "polling/Routes.h"

#include <QSet>

namespace Routes {

QList<SAS::RoutePair> ofWatcher(const Search& watcher, bool withPartners) {
    QStringList origins = Search::codes(watcher.origin);
    QStringList destinations = Search::codes(watcher.destination);
    origins.removeDuplicates();
    destinations.removeDuplicates();
    destinations.sort();
    QList<SAS::RoutePair> pairs;
    pairs.reserve(origins.size() * destinations.size());
    // Two origins have the same pair only where the hub stands in for one of them.
    QSet<QString> fromHub;
    for (const QString& origin : std::as_const(origins)) {
        for (const QString& destination : std::as_const(destinations)) {
            auto pair = SAS::searchedPair(origin, destination, withPartners);
            if (SAS::hubs().contains(pair.origin)) {
                if (fromHub.contains(destination))
                    continue;
                fromHub.insert(destination);
            }
            pairs.append(std::move(pair));
        }
    }
    return pairs;
}

SAS::RoutePair back(const SAS::RoutePair& pair) {
    return {pair.destination, pair.origin};
}

QStringList watched(const QList<Search>& watchers) {
    QStringList routes;
    for (const Search& watcher : watchers) {
        for (const SAS::RoutePair& pair : ofWatcher(watcher, false)) {
            routes.append(pair.text());
            if (watcher.isRoundTrip())
                routes.append(back(pair).text());
        }
    }
    routes.sort();
    routes.removeDuplicates();
    return routes;
}

bool isWayOut(const QString& route, const QStringList& origins) {
    const QString from = route.section(u'-', 0, 0, QString::SectionSkipEmpty);
    return SAS::hubs().contains(from) || origins.contains(from);
}

} // namespace Routes
