// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SAS.h"
#include "core/Search.h"

#include <QList>
#include <QStringList>

/// The routes that watchers are about, by the airline's hub rule. Pure functions.
namespace Routes {

/// The watcher's pairs of codes on its way out, each once: origins as typed, destinations in byte
/// order. `withPartners` as of SAS::searchedPair.
QList<SAS::RoutePair> ofWatcher(const Search& watcher, bool withPartners);

/// The same on the way home.
SAS::RoutePair back(const SAS::RoutePair& pair);

/// The pairs "OSL-NYC" of all `watchers`, both ways for round trips, in byte order. Without partner
/// flights, since others may have looked so.
QStringList watched(const QList<Search>& watchers);

/// Whether an offer on `route`, found for a round trip from `origins`, is of its way out: it begins
/// where the trip does, or at the hub that may stand in for that.
bool isWayOut(const QString& route, const QStringList& origins);

} // namespace Routes
