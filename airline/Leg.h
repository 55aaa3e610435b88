// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QHashFunctions>
#include <QString>

/// Which of the site's two searches is asked.
enum class Flow {
    /// The ordinary search for points.
    points,
    /// The search that also prices partner flights.
    award,
};

/// One lookup: a route on one date.
struct Leg {
    QString origin;
    QString destination;
    QDate date;
    Flow flow = Flow::points;

    bool operator==(const Leg&) const = default;

    /// What the keys of its fares begin with: "2025-03-01-OSL-BKK-".
    QString keyPrefix() const {
        return date.toString(Qt::ISODate) + u'-' + origin + u'-' + destination + u'-';
    }
};

inline size_t qHash(const Leg& leg, size_t seed = 0) {
    return qHashMulti(seed, leg.origin, leg.destination, leg.date.toJulianDay(),
                      static_cast<int>(leg.flow));
}
