// SPDX-License-Identifier: MIT
#pragma once

#include "polling/Legs.h"

#include <QSet>

#include <optional>

/// One watcher's turn in a round: its legs one after the other, and where its next turn goes on.
class Turn {
public:
    /// `cursor` is where the rotation of a watcher with more legs than one round takes goes on.
    Turn(Legs::All legs, qint64 cursor);

    /// The watcher was edited: goes on with its legs as they are now, without those already taken.
    void plan(Legs::All legs, qint64 cursor);
    /// Leaves out what comes before this leg, where it is one of the watcher's.
    void beginAt(const Leg& leg);

    /// The next leg; absent at the end of the turn.
    std::optional<Leg> next();
    /// What `next` would give.
    std::optional<Leg> peek() const;

    /// Whether the watcher, as it is now, asks for this leg.
    bool wants(const Leg& leg) const { return m_legs.contains(leg); }

    /// Legs of this turn, those that were taken before an edit included.
    int size() const;
    /// Taken of them.
    int taken() const { return static_cast<int>(m_taken.size()); }
    /// All legs of the watcher where one round does not take them all; otherwise 0.
    int rotationTotal() const;
    /// Where the rotation goes on behind what was taken; absent without one.
    std::optional<qint64> cursor() const;

private:
    void skipTaken();

    Legs::All m_legs;
    qsizetype m_start = 0;
    QList<Leg> m_selected;
    qsizetype m_next = 0;
    QSet<Leg> m_taken;
};
