// SPDX-License-Identifier: MIT
#pragma once

#include "standin/Leg.h"

#include <QDateTime>
#include <QList>
#include <QMap>

namespace standin {

enum class Cabin { Economy, Premium, Business, First };

struct Segment {
    QString origin;      ///< IATA code
    QString destination; ///< IATA code
    QString carrier;     ///< marketing airline, two letters
    int number = 0;      ///< flight number
    QDateTime departs;   ///< in the origin's zone
    QDateTime arrives;   ///< in the destination's zone
};

/// What one cabin of a flight offers for points.
struct AwardCabin {
    int seats = 0;        ///< award seats at this look, 0 when there are none
    int points = 0;       ///< price of one seat
    bool existed = false; ///< there were award seats at this look or an earlier one
};

struct Flight {
    QList<Segment> segments; ///< at least one
    bool isPartner = false;  ///< shown in the award flow only
    QMap<Cabin, AwardCabin> cabins;

    bool hasSeats() const;
};

/// The flights of an invented airline. Everything follows from the seed: the timetable of a route
/// is the same every day, and each cabin of a flight on a day has a story that decides how many
/// award seats it shows at the first, second, third... look at that leg.
class Inventory {
public:
    explicit Inventory(quint64 seed);

    /// The two to five flights of a leg. `look` counts from 1.
    QList<Flight> flights(const Leg& leg, int look) const;

private:
    quint64 draw(const QString& about) const;
    Flight fly(const Leg& leg, const QStringList& stops, const QString& carrier, int index) const;
    void offerSeats(Flight& flight, const Leg& leg, int index, int look) const;

    quint64 m_seed;
};

} // namespace standin
