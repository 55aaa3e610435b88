// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OneShot.h"

#include <QCoroTask>
#include <QDate>

#include <chrono>
#include <functional>
#include <memory>

/// A moment of the wall clock: seconds since 1970-01-01 00:00 UTC, with fractions.
using Instant = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

/// A moment of the monotonic clock: only differences mean something. It never jumps and goes on
/// while the machine is suspended.
using Ticks = std::chrono::duration<double>;

inline double secondsSince1970(Instant instant) {
    return instant.time_since_epoch().count();
}
/// The last second of the year 9999.
inline constexpr double latestSecond = 253'402'300'799;
/// Numbers come from files and strangers, and instants become whole seconds and dates: what lies
/// outside the years 1 to 9999 is cut to them, and what is no number is 1970.
Instant instantFromSeconds(double seconds);

/// The only source of time: nothing else asks the system for it or sleeps by itself.
/// Intervals are measured with `ticks`, expiries and dates with `now` and `today`.
class Clock {
public:
    /// A call that has not happened yet; destroying it cancels the call.
    class Timer {
    public:
        virtual ~Timer() = default;
    };

    virtual ~Clock() = default;

    virtual Instant now() const = 0;
    virtual Ticks ticks() const = 0;
    /// Today's date in the user's time zone.
    virtual QDate today() const = 0;
    /// Calls `call` once from the event loop when `delay` has passed. After the machine was
    /// suspended it may be half a minute late.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                                       std::function<void()> call) = 0;

    /// The clock must outlive the sleep.
    QCoro::Task<> sleep(std::chrono::milliseconds delay);
};

/// One sleep at a time that can be cut short.
class InterruptibleSleep {
public:
    explicit InterruptibleSleep(Clock& clock) : m_clock(clock) {}
    ~InterruptibleSleep() { interrupt(); }
    Q_DISABLE_COPY_MOVE(InterruptibleSleep)

    /// Starts the sleep; the awaited answer is true when it lasted its whole time.
    OneShot<bool> start(std::chrono::milliseconds delay);
    void interrupt();

private:
    Clock& m_clock;
    std::unique_ptr<Clock::Timer> m_timer;
    OneShot<bool> m_end;
};
