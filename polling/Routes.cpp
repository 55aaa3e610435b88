// SPDX-License-Identifier: MIT
#include "polling/Routes.h"

#include <QSet>

#include <algorithm>

namespace Routes {

QList<Route> ofWatcher(const Search& watcher, bool withPartners) {
    QStringList origins = Search::codes(watcher.origin);
    QStringList destinations = Search::codes(watcher.destination);
    origins.removeDuplicates();
    destinations.removeDuplicates();
    destinations.sort();
    QList<Route> routes;
    routes.reserve(origins.size() * destinations.size());
    // Two origins have the same route only where the hub stands in for one of them.
    QSet<QString> fromHub;
    for (const QString& origin : std::as_const(origins)) {
        for (const QString& destination : std::as_const(destinations)) {
            auto route = SAS::searchedRoute({origin, destination}, withPartners);
            if (SAS::hubs().contains(route.origin)) {
                if (fromHub.contains(destination))
                    continue;
                fromHub.insert(destination);
            }
            routes.append(std::move(route));
        }
    }
    return routes;
}

QList<Route> watched(const QList<Search>& watchers) {
    QSet<Route> routes;
    for (const Search& watcher : watchers) {
        for (const Route& route : ofWatcher(watcher, false)) {
            routes.insert(route);
            if (watcher.isRoundTrip())
                routes.insert(route.reversed());
        }
    }
    QList<Route> sorted(routes.begin(), routes.end());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

bool isWayOut(const Route& route, const QStringList& origins) {
    return SAS::hubs().contains(route.origin) || origins.contains(route.origin);
}

} // namespace Routes
