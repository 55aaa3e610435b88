// SPDX-License-Identifier: MIT
#include "platform/linux/LinuxClock.h"

#include <QTimer>

#include <algorithm>
#include <ctime>

namespace {

class QtTimer final : public Clock::Timer {
public:
    QtTimer(std::chrono::milliseconds delay, std::function<void()> call) {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        // The call may destroy this timer, so it runs from a copy.
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [call = std::move(call)] {
            const auto copy = call;
            copy();
        });
        // A longer one would not fit into Qt's timers, and nothing here waits for weeks.
        m_timer.start(std::min<std::chrono::milliseconds>(delay, std::chrono::hours(24 * 20)));
    }

private:
    QTimer m_timer;
};

} // namespace

Instant LinuxClock::now() const {
    return std::chrono::time_point_cast<Instant::duration>(std::chrono::system_clock::now());
}

Ticks LinuxClock::ticks() const {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

QDate LinuxClock::today() const {
    return QDate::currentDate();
}

std::unique_ptr<Clock::Timer> LinuxClock::after(std::chrono::milliseconds delay,
                                                std::function<void()> call) {
    return std::make_unique<QtTimer>(delay, std::move(call));
}
