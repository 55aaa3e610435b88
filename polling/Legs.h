// SPDX-License-Identifier: MIT
#pragma once

#include "airline/FetchedLegs.h"
#include "airline/SAS.h"
#include "core/Search.h"

#include <QList>
#include <QSet>
#include <QString>

/// One lookup: a route on one date.
struct Leg {
    QString origin;
    QString destination;
    /// "yyyyMMdd".
    QString date;
    bool operator==(const Leg&) const = default;
};

/// How a watcher becomes lookups. Pure functions.
namespace Legs {

/// Dates of one window that are looked at.
constexpr int datesPerWindow = 330;
/// Legs of one watcher that one round takes; a watcher with more takes turns with them.
constexpr int perRound = 60;

/// All legs of a watcher: every route pair on every outbound date, then the way back on every
/// return date. Each is made when it is asked for, since a wide watcher has millions.
struct All {
    QList<SAS::RoutePair> pairs;
    /// "yyyyMMdd".
    QStringList outbound;
    QStringList homebound;

    qsizetype size() const { return pairs.size() * (outbound.size() + homebound.size()); }
    Leg operator[](qsizetype index) const;
};

/// Throws Err when the watcher names no origin, destination or departure date.
All ofWatcher(const Search& watcher);

/// The legs of one round from `start` on, wrapping around; all of them when they fit into one.
QList<Leg> slice(const All& legs, qsizetype start);

/// Legs in a row that share their route become one group.
QList<LegGroup> grouped(const QList<Leg>& legs);

/// What the fare keys of each leg begin with: "yyyy-MM-dd-OSL-BKK-".
QSet<QString> visited(const QList<Leg>& legs);

} // namespace Legs
