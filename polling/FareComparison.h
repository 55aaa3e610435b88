// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Fare.h"
#include "core/Database.h"

#include <QSet>

/// What one fare means for a watcher: what is to be stored, all of it or nothing, and then said.
struct FareNews {
    QString key;
    /// Cabins that became available, each an offer of its own.
    QList<Match> found;
    /// The record that cabins have vanished; absent when none has.
    std::optional<Match> soldOut;
    /// The cabins that have vanished.
    CabinSet gone;
    /// What the watcher has seen of the fare from now on; absent when that stays as it was.
    std::optional<Database::Seen> seen;

    bool operator==(const FareNews&) const = default;
};

/// Compares the fares that one round fetched for a watcher with what it has seen before.
/// Values in, values out; it stores and announces nothing.
class FareComparison {
public:
    /// `visited` as of `Legs::visited`; `seen` is the state before the round, and stays the
    /// measure for what has sold out; `now` dates the finds.
    FareComparison(Search watcher, QSet<QString> visited, QMap<QString, Database::Seen> seen,
                   Instant now);

    /// One fare of the round; absent when it says nothing new. Call for all fares first.
    std::optional<FareNews> add(const Fare& fare);
    /// The next fare that was available before and lost cabins on a leg of this round; absent
    /// after the last.
    std::optional<FareNews> nextGone();

    /// Fares that satisfied the watcher, each call of `add` counted.
    int satisfied() const { return m_satisfied; }

private:
    std::optional<FareNews> goneOf(const QString& key, const Database::Seen& before) const;
    bool isVisited(const QString& key) const;

    Search m_watcher;
    QSet<QString> m_visited;
    QMap<QString, Database::Seen> m_seen;
    QMap<QString, Database::Seen>::const_iterator m_nextSeen;
    /// What is seen of the fares that satisfied in this round, by fare key.
    QHash<QString, Database::Seen> m_round;
    Instant m_now;
    int m_satisfied = 0;
};
