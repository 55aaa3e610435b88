// SPDX-License-Identifier: MIT
#include "platform/Clock.h"

#include <algorithm>
#include <cmath>

Instant instantFromSeconds(double seconds) {
    constexpr double earliestSecond = -62'135'596'800;
    const double known = std::isnan(seconds) ? 0 : seconds;
    return Instant(Ticks(std::clamp(known, earliestSecond, latestSecond)));
}

QCoro::Task<> Clock::sleep(std::chrono::milliseconds delay) {
    const OneShot<bool> end;
    const auto timer = after(delay, [end] { end.resolve(true); });
    co_await end;
}

OneShot<bool> InterruptibleSleep::start(std::chrono::milliseconds delay) {
    interrupt();
    m_end = OneShot<bool>();
    m_timer = m_clock.after(delay, [end = m_end] { end.resolve(true); });
    return m_end;
}

void InterruptibleSleep::interrupt() {
    m_timer.reset();
    m_end.resolve(false);
}
