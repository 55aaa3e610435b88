// SPDX-License-Identifier: MIT
#include "polling/Matching.h"

#include "polling/Routes.h"

#include <algorithm>

namespace {

bool isWithin(QDate date, QDate from, QDate to) {
    return date.isValid() && date >= from && (!to.isValid() || date <= to);
}

bool concerns(const Match& match, const Search& watcher) {
    if (!watcher.cabins.contains(match.cabin))
        return false;
    // An offer without a number of seats gets the benefit of the doubt.
    if (watcher.minSeats >= 2 && match.seats >= 1 && match.seats < watcher.minSeats)
        return false;
    if (match.stops && match.stops->number > watcher.maxStops)
        return false;
    // Others may have found it without partner flights, so the hub rule always holds here.
    const QList<Route> routes = Routes::ofWatcher(watcher, false);
    if (routes.contains(match.route()))
        return isWithin(match.travelDate(), watcher.dateFrom, watcher.dateTo);
    return watcher.isRoundTrip() && routes.contains(match.route().reversed()) &&
           isWithin(match.travelDate(), watcher.returnDateFrom, watcher.returnDateTo);
}

} // namespace

bool Matching::matchesAWatcher(const Match& match, const QList<Search>& searches) {
    return std::any_of(searches.begin(), searches.end(),
                       [&match](const Search& watcher) { return concerns(match, watcher); });
}
