// SPDX-License-Identifier: MIT
#include "platform/linux/LinuxClock.h"

#include <QTimer>

#include <algorithm>
#include <ctime>

namespace {

/// The machine's time since it was started, suspended or not.
Ticks bootTime() {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

class QtTimer final : public Clock::Timer {
public:
    QtTimer(std::chrono::milliseconds delay, std::function<void()> call)
        : m_due(bootTime() + delay), m_call(std::move(call)) {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { wake(); });
        start(delay);
    }

private:
    void start(std::chrono::milliseconds delay) {
        m_timer.start(std::clamp<std::chrono::milliseconds>(delay, {}, longestStep));
    }
    void wake() {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_due - bootTime());
        if (left.count() > 0) {
            start(left);
            return;
        }
        // The call may destroy this timer, so it runs from a copy.
        const auto copy = m_call;
        copy();
    }

    /// The event loop's timers stand still while the machine is suspended. Looking at the time now
    /// and then makes up for that.
    static constexpr std::chrono::milliseconds longestStep = std::chrono::seconds(30);
    QTimer m_timer;
    Ticks m_due;
    std::function<void()> m_call;
};

} // namespace

Instant LinuxClock::now() const {
    return std::chrono::time_point_cast<Instant::duration>(std::chrono::system_clock::now());
}

Ticks LinuxClock::ticks() const {
    return bootTime();
}

QDate LinuxClock::today() const {
    return QDate::currentDate();
}

std::unique_ptr<Clock::Timer> LinuxClock::after(std::chrono::milliseconds delay,
                                                std::function<void()> call) {
    return std::make_unique<QtTimer>(delay, std::move(call));
}
