// SPDX-License-Identifier: MIT
#pragma once

#include "core/FareKey.h"
#include "core/LocalTime.h"
#include "core/Stops.h"
#include "platform/Clock.h"

#include <QString>

#include <optional>
#include <variant>

/// One award seat offer in one cabin: found for a watcher, or shared by the community.
struct Match {
    /// `searchId` of a stored community find.
    static constexpr qint64 communitySearchId = -1;
    /// Offers that screens show at most.
    static constexpr int mostShown = 2000;

    qint64 id = 0;
    /// The watcher it was found for.
    qint64 searchId = 0;
    /// Date of travel, route and flights.
    FareKey key;
    QString fromCity;
    QString toCity;
    LocalTime depart;
    LocalTime arrive;
    /// Absent when unknown.
    std::optional<Stops> stops;
    /// 0 when unknown.
    int durationMinutes = 0;
    Cabin cabin = Cabin::economy;
    int seats = 0;
    int points = 0;
    /// Where the offer can be booked; empty when there is no such page.
    QString bookingURL;
    Instant foundAt;
    bool isCommunity = false;

    bool operator==(const Match&) const = default;

    const Route& route() const { return key.route; }
    QDate travelDate() const { return key.date; }
    OfferId offer() const { return {key, cabin}; }
    /// Such as "1 stopp (CPH)"; empty when unknown.
    QString stopsText() const { return stops ? stops->text() : QString(); }
    /// Such as "Oslo → New York"; an airport code of the route stands in for a missing name.
    QString places() const;
    /// Such as "10t 5m"; absent when the duration is unknown.
    std::optional<QString> durationText() const;
};

/// The record that cabins of a fare that was found earlier have vanished.
struct SoldOut {
    qint64 id = 0;
    /// The watcher that had seen them.
    qint64 searchId = 0;
    FareKey key;
    /// The cabins that have vanished.
    CabinSet cabins;
    /// What the fare was called, such as "OSL-BKK 2025-03-01 · SK1467,TG955".
    QString label;
    Instant foundAt;

    bool operator==(const SoldOut&) const = default;
};

/// What the list of hits has: offers, and the records that some have gone.
using Hit = std::variant<Match, SoldOut>;

/// What offers and sold-out records have in common.
namespace Hits {

inline bool isSoldOut(const Hit& hit) {
    return std::holds_alternative<SoldOut>(hit);
}
inline const FareKey& key(const Hit& hit) {
    return std::visit([](const auto& one) -> const FareKey& { return one.key; }, hit);
}
inline qint64 searchId(const Hit& hit) {
    return std::visit([](const auto& one) { return one.searchId; }, hit);
}
inline Instant foundAt(const Hit& hit) {
    return std::visit([](const auto& one) { return one.foundAt; }, hit);
}

} // namespace Hits
