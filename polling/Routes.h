// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SAS.h"
#include "core/Search.h"

#include <QList>
#include <QStringList>

/// The routes that watchers are about, by the airline's hub rule. Pure functions.
namespace Routes {

/// The watcher's routes on its way out, each once: origins as typed, destinations in byte order.
/// `withPartners` as of SAS::searchedRoute.
QList<Route> ofWatcher(const Search& watcher, bool withPartners);

/// Those of all `watchers`, both ways for round trips, in byte order. Without partner
/// flights, since others may have looked so.
QList<Route> watched(const QList<Search>& watchers);

/// Whether an offer on `route`, found for a round trip from `origins`, is of its way out: it begins
/// where the trip does, or at the hub that may stand in for that.
bool isWayOut(const Route& route, const QStringList& origins);

} // namespace Routes
