// SPDX-License-Identifier: MIT
#include "polling/Matching.h"

#include "airline/SAS.h"

#include <algorithm>

namespace {

struct WatchedRoutes {
    QSet<Route> outbound;
    QSet<Route> homebound;
};

WatchedRoutes routesOf(const Search& watcher) {
    WatchedRoutes routes;
    for (const QString& origin : Search::codes(watcher.origin)) {
        for (const QString& destination : Search::codes(watcher.destination)) {
            // Others may have found it without partner flights, so the hub rule always holds here.
            const Route route = SAS::searchedRoute({origin, destination}, false);
            routes.outbound.insert(route);
            if (watcher.isRoundTrip())
                routes.homebound.insert(route.reversed());
        }
    }
    return routes;
}

bool isWithin(QDate date, QDate from, QDate to) {
    return date.isValid() && date >= from && (!to.isValid() || date <= to);
}

bool concerns(const Match& match, const Search& watcher) {
    const WatchedRoutes routes = routesOf(watcher);
    const bool outbound = routes.outbound.contains(match.route());
    if (!outbound && !routes.homebound.contains(match.route()))
        return false;
    if (!watcher.cabins.contains(match.cabin))
        return false;
    if (outbound ? !isWithin(match.travelDate(), watcher.dateFrom, watcher.dateTo)
                 : !isWithin(match.travelDate(), watcher.returnDateFrom, watcher.returnDateTo))
        return false;
    // An offer without a number of seats gets the benefit of the doubt.
    if (watcher.minSeats >= 2 && match.seats >= 1 && match.seats < watcher.minSeats)
        return false;
    return !match.stops || match.stops->number <= watcher.maxStops;
}

} // namespace

bool Matching::matchesAWatcher(const Match& match, const QList<Search>& searches) {
    return std::any_of(searches.begin(), searches.end(),
                       [&match](const Search& watcher) { return concerns(match, watcher); });
}
