// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "ui/hits/Journeys.h"

#include <QSet>

#include <functional>

/// Tells which way of a round trip an offer is; absent for others.
using DirectionOf = std::function<std::optional<Direction>(const Match&)>;

/// What one card shows.
struct Card {
    Hit hit;
    std::optional<Direction> direction;
    bool operator==(const Card&) const = default;
};

/// One line of the page's list, from edge to edge.
struct HitsRow {
    /// A region's heading, a journey's header, the heading of one of its directions, or some of
    /// its cards side by side.
    enum class Kind { region, journey, direction, cards };

    Kind kind = Kind::region;
    /// Stays the same from one build to the next.
    QString id;
    /// The journey it belongs to; empty for a region's heading.
    QString journey;
    QString title;
    /// Offers that can still be had, or the cards of a direction.
    int count = 0;
    int soldOut = 0;
    std::optional<int> cheapest;
    QString dates;
    bool isOpen = false;
    /// The last row of its journey.
    bool isLast = false;
    QList<Card> cards;

    bool operator==(const HitsRow&) const = default;
};

/// How the list is laid out.
struct HitsLayout {
    /// Under region headings.
    bool hasRegions = true;
    /// Ids of the journeys that show their cards.
    QSet<QString> open;
    /// Cards side by side, at least 1.
    int columns = 2;
};

/// The rows of `journeys`, from top to bottom. `direction` is asked for shown offers only.
QList<HitsRow> hitsRows(const QList<JourneyGroup>& journeys, const HitsLayout& layout,
                        const DirectionOf& direction);
