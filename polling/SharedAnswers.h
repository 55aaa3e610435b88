// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Fare.h"
#include "core/Search.h"
#include "polling/Legs.h"

#include <QHash>
#include <QList>

/// The answers of one round that a later watcher of it wants too, so that no leg is looked at
/// twice.
class SharedAnswers {
public:
    /// Keeps an answer when one of `waiting`, the watchers whose turn is still to come, wants it.
    void offer(const Leg& leg, const QList<Fare>& fares, const QList<Search>& waiting, QDate today);
    /// Absent when the leg has not been answered, or nobody seemed to want it.
    std::optional<QList<Fare>> find(const Leg& leg) const;

private:
    struct Wanted {
        /// What `legs` were made from: a wide watcher has thousands of route pairs.
        Search watcher;
        Legs::All legs;
    };
    bool wants(const Search& watcher, const Leg& leg, QDate today);

    QHash<qint64, Wanted> m_wanted;
    QHash<Leg, QList<Fare>> m_answers;
};
