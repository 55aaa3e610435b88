// SPDX-License-Identifier: MIT
#include "polling/Matching.h"

#include "airline/SAS.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct WatchedRoutes {
    QSet<QString> outbound;
    QSet<QString> homebound;
};

WatchedRoutes routesOf(const Search& watcher) {
    WatchedRoutes routes;
    for (const QString& origin : Search::codes(watcher.origin)) {
        for (const QString& destination : Search::codes(watcher.destination)) {
            // Others may have found it without partner flights, so the hub rule always holds here.
            const auto pair = SAS::searchedPair(origin, destination, false);
            routes.outbound.insert(pair.text());
            if (watcher.isRoundTrip())
                routes.homebound.insert(pair.destination + u'-' + pair.origin);
        }
    }
    return routes;
}

bool isWithin(const QString& date, const QString& from, const QString& to) {
    return !date.isEmpty() && date >= from && (to.isEmpty() || date <= to);
}

bool concerns(const Match& match, const Search& watcher) {
    const WatchedRoutes routes = routesOf(watcher);
    const bool outbound = routes.outbound.contains(match.route);
    if (!outbound && !routes.homebound.contains(match.route))
        return false;
    if (!watcher.cabins.contains(match.cabin))
        return false;
    if (outbound ? !isWithin(match.travelDate, watcher.dateFrom, watcher.dateTo)
                 : !isWithin(match.travelDate, watcher.returnDateFrom, watcher.returnDateTo))
        return false;
    // An offer without a number of seats gets the benefit of the doubt.
    if (watcher.minSeats >= 2 && match.seats >= 1 && match.seats < watcher.minSeats)
        return false;
    return Matching::stopsCount(match.stopsText) <= watcher.maxStops;
}

} // namespace

namespace Matching {

QString stopsText(int numberOfStops, const QStringList& stops) {
    if (numberOfStops == 0)
        return u"direkte"_s;
    return u"%1 stopp (%2)"_s.arg(QString::number(numberOfStops), stops.join(u','));
}

int stopsCount(const QString& stopsText) {
    const auto end = std::find_if_not(stopsText.begin(), stopsText.end(),
                                      [](QChar c) { return c >= u'0' && c <= u'9'; });
    return stopsText.left(end - stopsText.begin()).toInt();
}

bool matchesAWatcher(const Match& match, const QList<Search>& searches) {
    return std::any_of(searches.begin(), searches.end(),
                       [&match](const Search& watcher) { return concerns(match, watcher); });
}

} // namespace Matching
