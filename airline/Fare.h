// SPDX-License-Identifier: MIT
#pragma once

#include "airline/CabinNumbers.h"
#include "core/FareKey.h"
#include "core/LocalTime.h"
#include "core/Stops.h"

#include <QString>

/// One itinerary of one date, as the airline's response gives it.
///
/// Codes are upper case. A default fare has nothing known, and no numbers for any cabin; a parsed
/// one has all four cabins in `availability`.
struct Fare {
    /// Date of departure, route and flights.
    FareKey key;
    /// City names as the airline spells them; the code where there is none.
    QString fromCity;
    QString toCity;
    Stops stops;
    LocalTime localDepart;
    /// Empty when absent.
    LocalTime localArrive;
    /// 0 when unknown.
    int durationMinutes = 0;
    /// Award seats; 0 when nothing is offered.
    CabinNumbers availability;
    /// Lowest price in points; a cabin without a price is absent.
    CabinNumbers saverPoints;
    /// The page where it can be booked; empty when it cannot be built.
    QString bookingURL;

    bool operator==(const Fare&) const = default;
};
