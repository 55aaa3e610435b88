// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Leg.h"
#include "platform/Clock.h"

#include <optional>

/// Where the next round goes on, when the last one was cut short.
struct Resume {
    /// The first watcher that has a turn; those with lower numbers have had theirs.
    qint64 watcher = 0;
    /// Its first leg; absent for all of them.
    std::optional<Leg> leg;
    /// When what was looked at before has become old, so that a whole round is better; absent where
    /// a site refuses, or its last legs would never have their turn.
    std::optional<Ticks> end;

    bool operator==(const Resume&) const = default;

    /// The form that outlives the program, such as "3 OSL CPH 2027-03-01 points"; without `end`.
    QString toText() const;
    /// Absent for any other text.
    static std::optional<Resume> fromText(const QString& text);
};
