// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Fare.h"
#include "airline/Leg.h"
#include "core/Match.h"
#include "core/Search.h"
#include "core/SeenStore.h"

/// What one fare means for a watcher: what is to be stored, all of it or nothing, and then said.
struct FareNews {
    FareKey key;
    /// Cabins that became available, each an offer of its own.
    QList<Match> found;
    /// The record that cabins have vanished; absent when none has.
    std::optional<SoldOut> soldOut;
    /// What the watcher has seen of the fare from now on; absent when that stays as it was.
    std::optional<SeenStore::Seen> seen;

    bool operator==(const FareNews&) const = default;
};

/// Compares the answers that a watcher gets in one round, leg by leg, with what it has seen before.
/// Values in, values out; it stores and announces nothing.
class FareComparison {
public:
    /// `seen` is what the watcher had seen before the round.
    FareComparison(Search watcher, QMap<FareKey, SeenStore::Seen> seen);

    /// From the next leg on the watcher asks for something else.
    void setWatcher(const Search& watcher) { m_watcher = watcher; }

    /// What the answer for `leg` says that was not known: what became available among its `fares`,
    /// and what was seen before on that leg and is not among them. `now` dates it.
    QList<FareNews> compare(const Leg& leg, const QList<Fare>& fares, Instant now);

    /// Fares that satisfied the watcher in this round.
    int satisfied() const { return m_satisfied; }

private:
    void add(const Fare& fare, Instant now);
    void addGone(const FareKey& key, Instant now);
    FareNews& newsOf(const FareKey& key);

    Search m_watcher;
    /// Before the round.
    QMap<FareKey, SeenStore::Seen> m_seen;
    /// What is seen of the fares that satisfied in this round.
    QHash<FareKey, SeenStore::Seen> m_round;
    /// Of the leg that is compared, in its order, with each key's place.
    QList<FareNews> m_news;
    QHash<FareKey, qsizetype> m_places;
    int m_satisfied = 0;
};
