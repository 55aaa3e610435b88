// SPDX-License-Identifier: MIT
#pragma once

#include "airline/CabinNumbers.h"

#include <QString>
#include <QStringList>

/// One itinerary of one date, as the airline's response gives it.
///
/// Codes are upper case, times local and exactly as the response spells them. A default fare has
/// every text empty, both integers 0 and no numbers for any cabin; a parsed one has all four cabins
/// in `availability`.
struct Fare {
    /// `date`-`origin`-`destination`-`flight`, such as 2025-03-01-OSL-BKK-SK1467,TG955.
    QString key;
    QString origin;
    QString destination;
    /// `origin`-`destination`.
    QString route;
    /// City names as the airline spells them; the code where there is none.
    QString fromCity;
    QString toCity;
    /// Departure date, "yyyy-MM-dd".
    QString date;
    int numberOfStops = 0;
    /// Codes of the airports between, in flight order.
    QStringList stops;
    /// Flight designators joined by ",", such as "SK1467,TG955".
    QString flight;
    QString localDepart;
    /// Empty when absent.
    QString localArrive;
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
