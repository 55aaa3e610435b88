// SPDX-License-Identifier: MIT
#pragma once

#include "core/Route.h"

#include <QDate>

/// Which of the site's two searches is asked.
enum class Flow {
    /// The ordinary search for points.
    points,
    /// The search that also prices partner flights.
    award,
};

/// One lookup: a route on one date.
struct Leg {
    Route route;
    QDate date;
    Flow flow = Flow::points;

    bool operator==(const Leg&) const = default;
};

inline size_t qHash(const Leg& leg, size_t seed = 0) {
    return qHashMulti(seed, leg.route, leg.date.toJulianDay(), static_cast<int>(leg.flow));
}
