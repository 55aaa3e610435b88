// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Leg.h"
#include "core/Search.h"

#include <QDate>
#include <QList>

#include <optional>

/// How a watcher becomes lookups. Pure functions.
namespace Legs {

/// Legs of one watcher that one round takes; a watcher with more takes turns with them.
constexpr int perRound = 60;

/// All legs of a watcher: every route on every outbound date, then the way back on every
/// return date, without days that have passed. Each is made when it is asked for, since a wide
/// watcher has millions.
struct All {
    QList<Route> routes;
    QList<QDate> outbound;
    QList<QDate> homebound;
    Flow flow = Flow::points;

    /// 0 when all dates have passed.
    qsizetype size() const { return routes.size() * (outbound.size() + homebound.size()); }
    Leg operator[](qsizetype index) const;
    bool contains(const Leg& leg) const;
};

/// Throws Err when the watcher names no origin, destination or departure date.
All ofWatcher(const Search& watcher, QDate today);

/// The same; absent where that throws.
std::optional<All> allOf(const Search& watcher, QDate today);

/// The legs of one round from `start` on, wrapping around; all of them when they fit into one.
QList<Leg> slice(const All& legs, qsizetype start);

/// How many legs of the watcher one round takes; 0 for one that cannot be looked up.
int countOfRound(const Search& watcher, QDate today);

} // namespace Legs
