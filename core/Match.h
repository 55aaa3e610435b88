// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QString>

#include <optional>

/// One award seat offer in one cabin: found for a watcher, shared by the community, or the record
/// that an earlier one has sold out.
struct Match {
    /// `searchId` of a stored community find.
    static constexpr qint64 communitySearchId = -1;
    /// Offers that screens show at most.
    static constexpr int mostShown = 2000;

    qint64 id = 0;
    /// The watcher it was found for.
    qint64 searchId = 0;
    /// The fare key: date, origin, destination and flight designators.
    QString key;
    /// Two airport codes joined by "-", origin first. A sold-out record has its label here.
    QString route;
    QString fromCity;
    QString toCity;
    /// Local times as display text, such as "14.03 09:05".
    QString depart;
    QString arrive;
    /// Such as "direkte" or "1 stopp (CPH)".
    QString stopsText;
    /// Flight designators joined by ",".
    QString flight;
    /// 0 when unknown.
    int durationMinutes = 0;
    /// Raw value of the cabin; a sold-out record has all its cabins, joined by ",".
    QString cabin;
    int seats = 0;
    int points = 0;
    /// "yyyy-MM-dd", or empty.
    QString travelDate;
    /// Where the offer can be booked; empty when there is no such page.
    QString bookingURL;
    bool soldOut = false;
    Instant foundAt;
    bool isCommunity = false;

    bool operator==(const Match&) const = default;

    /// What the offer is called in notifications and among hunters: its key, "#" and its cabin.
    QString identity() const;
    /// Such as "Oslo → New York"; an airport code of the route stands in for a missing name.
    QString places() const;
    /// Such as "10t 5m"; absent when the duration is unknown.
    std::optional<QString> durationText() const;
};
