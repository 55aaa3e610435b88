// SPDX-License-Identifier: MIT
#include "polling/Legs.h"

#include "airline/SAS.h"
#include "core/Err.h"
#include "core/WatcherForm.h"
#include "polling/Routes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Legs {

Leg All::operator[](qsizetype index) const {
    const qsizetype back = index - routes.size() * outbound.size();
    if (back < 0)
        return {routes[index / outbound.size()], outbound[index % outbound.size()], flow};
    return {routes[back / homebound.size()].reversed(), homebound[back % homebound.size()], flow};
}

bool All::contains(const Leg& leg) const {
    return leg.flow == flow &&
           ((outbound.contains(leg.date) && routes.contains(leg.route)) ||
            (homebound.contains(leg.date) && routes.contains(leg.route.reversed())));
}

All ofWatcher(const Search& watcher, QDate today) {
    if (Search::codes(watcher.origin).isEmpty())
        throw Err{u"Søket mangler avreisested."_s};
    if (Search::codes(watcher.destination).isEmpty())
        throw Err{u"Søket mangler destinasjon."_s};
    if (!watcher.dateFrom.isValid())
        throw Err{u"SAS-søk krever avreisedato."_s};
    All legs;
    legs.routes = Routes::ofWatcher(watcher, watcher.includePartners);
    legs.flow = watcher.includePartners ? Flow::award : Flow::points;
    legs.outbound =
        SAS::expandDates(watcher.dateFrom, watcher.dateTo, today, WatcherForm::mostDays);
    legs.homebound = SAS::expandDates(watcher.returnDateFrom, watcher.returnDateTo, today,
                                      WatcherForm::mostDays);
    return legs;
}

QList<Leg> slice(const All& legs, qsizetype start) {
    const bool fitIntoOne = legs.size() <= perRound;
    const qsizetype count = std::min<qsizetype>(legs.size(), perRound);
    QList<Leg> selected;
    selected.reserve(count);
    for (qsizetype k = 0; k < count; ++k)
        selected.append(legs[fitIntoOne ? k : (start + k) % legs.size()]);
    return selected;
}

std::optional<All> allOf(const Search& watcher, QDate today) {
    try {
        return ofWatcher(watcher, today);
    } catch (const Err&) {
        return std::nullopt;
    }
}

int countOfRound(const Search& watcher, QDate today) {
    const auto legs = allOf(watcher, today);
    return legs ? static_cast<int>(std::min<qsizetype>(legs->size(), perRound)) : 0;
}

} // namespace Legs
