// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QList>
#include <QString>

#include <optional>

/// How far a round is and how long it still takes, told from its lookups. The watchers of a round
/// are numbered from 0, the lookups of one watcher from 1; 0 stands before the first.
class RoundPace {
public:
    /// At `at` the round is at `lookup` of `watcher`, and has as many lookups of each watcher as
    /// `planned` says. A note that says nothing new means that the round stands still, for instance
    /// until the user has signed in: that time does not count.
    void note(const QList<int>& planned, int watcher, int lookup, Ticks at);

    /// 0 to 1.
    double fraction() const;
    /// What the lookups that are not done will take, at the mean pace of those that are; absent
    /// before three of them are done.
    std::optional<Ticks> left() const;

private:
    int before() const;
    int all() const;

    QList<int> m_planned;
    int m_watcher = 0;
    int m_lookup = 0;
    /// When the lookup in progress began; absent while the round stands still.
    std::optional<Ticks> m_began;
    int m_done = 0;
    Ticks m_taken{};
};

/// The minutes to show when `left` is left and `shown` was shown: the same again as long as that is
/// nearly right, so that the figure does not jump to and fro.
int steadyMinutes(std::optional<int> shown, Ticks left);

/// "ca. 2 min igjen", "under 1 min igjen".
QString timeLeftText(int minutes);
