// SPDX-License-Identifier: MIT
#pragma once

#include <QHashFunctions>
#include <QString>

#include <compare>

/// Where a flight goes, by airport codes, mostly of three capital letters.
struct Route {
    QString origin;
    QString destination;

    bool operator==(const Route&) const = default;
    std::strong_ordering operator<=>(const Route& other) const {
        if (const int order = origin.compare(other.origin); order != 0)
            return order <=> 0;
        return destination.compare(other.destination) <=> 0;
    }

    Route reversed() const { return {destination, origin}; }
    /// Such as "OSL-EWR"; what is not known is left out.
    QString text() const {
        return origin.isEmpty() || destination.isEmpty() ? origin + destination
                                                         : origin + u'-' + destination;
    }
    /// The reverse; a text that is not two pieces with "-" between is all origin.
    static Route fromText(const QString& text) {
        const qsizetype dash = text.indexOf(u'-');
        const bool isPair = dash > 0 && dash < text.size() - 1 && text.indexOf(u'-', dash + 1) < 0;
        return isPair ? Route{text.first(dash), text.sliced(dash + 1)} : Route{text, {}};
    }
};

inline size_t qHash(const Route& route, size_t seed = 0) {
    return qHashMulti(seed, route.origin, route.destination);
}
