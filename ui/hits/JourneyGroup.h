// SPDX-License-Identifier: MIT
#pragma once

#include "airports/Region.h"
#include "core/Match.h"

#include <QList>
#include <QString>

#include <optional>

/// All offers between two cities, in both directions: one journey on the hits page.
struct JourneyGroup {
    /// The undirected pair key, or "annet" for offers that belong to no pair.
    QString id;
    QString title;
    Airports::Region region = Airports::Region::other;
    /// In card order.
    QList<Hit> out;
    /// The opposite direction, in card order.
    QList<Hit> ret;

    bool operator==(const JourneyGroup&) const = default;

    /// Offers that are not sold out.
    int activeCount() const;
    int soldOutCount() const;
    /// Points of the cheapest offer that can still be had and has a price; absent without one.
    std::optional<int> cheapest() const;
    /// When the latest offer was found, sold out or not; absent for an empty group.
    std::optional<Instant> newest() const;
    /// First and last travel date of what can still be had, such as "07.03 – 01.04"; absent when
    /// no such offer has a date.
    std::optional<QString> dateSpan() const;
};
