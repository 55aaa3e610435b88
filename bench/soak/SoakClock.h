// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/LinuxClock.h"

#include <QList>
#include <QTimer>

#include <atomic>

/// The machine's clock, ahead of it by all the time that was skipped. `now` may be asked from any
/// thread.
class SoakClock final : public Clock {
public:
    /// Starts at `start` today, in the user's time zone.
    explicit SoakClock(QTime start);
    ~SoakClock() override;
    Q_DISABLE_COPY_MOVE(SoakClock)

    Instant now() const override;
    Ticks ticks() const override;
    QDate today() const override;
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                 std::function<void()> call) override;

    /// Goes ahead to when the next call is due, if there is one.
    void skip();
    /// Since when, in the machine's own time, nothing has been called.
    Ticks quietFor() const { return m_real.ticks() - m_lastCall; }

private:
    struct Entry {
        Ticks due;
        std::function<void()> call;
    };
    class SoakTimer;

    void schedule();
    void callDue();
    Entry* next() const;

    LinuxClock m_real;
    std::atomic<double> m_aheadSeconds = 0;
    QList<Entry*> m_entries;
    QTimer m_wake;
    Ticks m_lastCall;
};
