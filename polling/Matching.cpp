// SPDX-License-Identifier: MIT
#include "polling/Matching.h"

#include "polling/Routes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isWithin(const QString& date, const QString& from, const QString& to) {
    return !date.isEmpty() && date >= from && (to.isEmpty() || date <= to);
}

enum class Way { out, home };

bool isOneOf(const QList<SAS::RoutePair>& pairs, Way way, const QString& route) {
    return std::any_of(pairs.begin(), pairs.end(), [way, &route](const SAS::RoutePair& pair) {
        return (way == Way::out ? pair : Routes::back(pair)).text() == route;
    });
}

bool concerns(const Match& match, const Search& watcher) {
    if (!watcher.cabins.contains(match.cabin))
        return false;
    // An offer without a number of seats gets the benefit of the doubt.
    if (watcher.minSeats >= 2 && match.seats >= 1 && match.seats < watcher.minSeats)
        return false;
    if (Matching::stopsCount(match.stopsText) > watcher.maxStops)
        return false;
    // Others may have found it without partner flights, so the hub rule always holds here.
    const auto pairs = Routes::ofWatcher(watcher, false);
    if (isOneOf(pairs, Way::out, match.route))
        return isWithin(match.travelDate, watcher.dateFrom, watcher.dateTo);
    return watcher.isRoundTrip() && isOneOf(pairs, Way::home, match.route) &&
           isWithin(match.travelDate, watcher.returnDateFrom, watcher.returnDateTo);
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
