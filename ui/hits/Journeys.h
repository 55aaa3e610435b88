// SPDX-License-Identifier: MIT
#pragma once

#include "ui/hits/JourneyGroup.h"

#include <functional>
#include <optional>
#include <utility>

/// How offers become journeys: filtered, grouped by city pair, sorted and put under regions. Pure
/// functions.
namespace Journeys {

/// How the journeys are ordered; `region` also puts them under headings.
enum class SortOrder { region, found, cheapest };
/// How the cards inside a journey are ordered.
enum class CardOrder { travel, found };

struct Filter {
    /// Only this watcher's offers; absent for everybody's.
    std::optional<qint64> watcher;
    bool hideSoldOut = false;
};

/// The offers that pass, in their order, the community's last. Those belong to no watcher.
QList<Hit> filtered(const QList<Hit>& matches, const QList<Match>& communityHits,
                    const Filter& filter);

/// The two airport codes of a hit; absent when they are not two codes of three characters.
std::optional<Route> pairCodes(const Hit& hit);
/// Names a city pair whatever the direction, such as "New York|Oslo".
QString pairKey(const Route& codes);
/// Names a city pair with its direction, such as "Oslo>New York".
QString pairKeyDirected(const Route& codes);

/// Tells whether an offer is the outbound leg of a round trip.
using IsOutbound = std::function<bool(const Match&)>;

/// The journeys of `hits` in the wanted order. What compares equal is ordered by pair key, so
/// that news does not shuffle it; offers without codes make a last journey "annet".
QList<JourneyGroup> grouped(const QList<Hit>& hits, SortOrder sortOrder, CardOrder cardOrder,
                            const IsOutbound& isOutbound);

/// Whether `a` goes before `b`.
bool order(const JourneyGroup& a, const JourneyGroup& b, SortOrder sortOrder);

/// The journeys under the regions that have any, in the regions' order.
QList<std::pair<Airports::Region, QList<JourneyGroup>>>
regionSections(const QList<JourneyGroup>& journeys);

} // namespace Journeys
