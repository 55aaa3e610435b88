// SPDX-License-Identifier: MIT
#include "platform/Clock.h"

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
