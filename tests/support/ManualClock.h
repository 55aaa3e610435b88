// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QDateTime>
#include <QList>

/// A time that binary fractions of a second can tell exactly, so that parts add up to the whole.
inline constexpr std::chrono::milliseconds moment(125);

/// A clock that stands still until it is told to go on. Its calendar is UTC's.
class ManualClock final : public Clock {
public:
    /// Starts at noon of `today`.
    explicit ManualClock(QDate today = QDate(2027, 1, 15));

    Instant now() const override { return m_now; }
    Ticks ticks() const override { return m_ticks; }
    QDate today() const override;
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                 std::function<void()> call) override;

    /// Lets `time` pass: calls what falls due, in order, and gives coroutines their turns after
    /// each call, so that sleeps that follow on each other all happen.
    void advance(std::chrono::milliseconds time);
    /// The wall clock is set, by a person or a time server; nothing that waits notices.
    void setWallClock(std::chrono::milliseconds forward) { m_now += forward; }
    /// The machine is suspended for `time` and wakes up: what fell due meanwhile is called late,
    /// all of it at once.
    void suspend(std::chrono::milliseconds time);
    /// Calls that have not happened yet.
    qsizetype waiting() const;

private:
    struct Entry;
    class ManualTimer;

    Instant m_now;
    Ticks m_ticks{1000};
    std::shared_ptr<QList<Entry*>> m_entries;
};

/// Lets every coroutine that can go on go on, until nothing is left to do.
void settle();
