// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"
#include "core/Route.h"

#include <QDate>

/// Which itinerary a fare is of: the same on every day and for every hunter.
struct FareKey {
    /// Of departure, at the airport; invalid when it is not known.
    QDate date;
    Route route;
    /// Flight designators joined by ",", such as "SK1467,TG955".
    QString flights;

    bool operator==(const FareKey&) const = default;
    /// All fares of a date and route are next to each other.
    std::strong_ordering operator<=>(const FareKey& other) const;

    /// Such as "2025-03-01-OSL-BKK-SK1467,TG955", the form of records, files and the community;
    /// without the date where it is not known.
    QString text() const;
    /// The reverse of `text`, for any text: one of another form is all flights.
    static FareKey fromText(const QString& text);
};

inline size_t qHash(const FareKey& key, size_t seed = 0) {
    return qHashMulti(seed, key.date.toJulianDay(), key.route, key.flights);
}

/// One fare in one cabin: what hunters call an offer among each other.
struct OfferId {
    FareKey key;
    Cabin cabin = Cabin::economy;

    bool operator==(const OfferId&) const = default;

    /// Such as "2025-03-01-OSL-BKK-SK1467,TG955#business".
    QString text() const { return key.text() + u'#' + rawValue(cabin); }
    /// Absent when no cabin stands behind the last "#".
    static std::optional<OfferId> fromText(const QString& text);
};

inline size_t qHash(const OfferId& id, size_t seed = 0) {
    return qHashMulti(seed, id.key, static_cast<int>(id.cabin));
}
