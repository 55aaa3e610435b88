// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

/// The machine's clocks; ticks are CLOCK_BOOTTIME, which counts suspended time too.
class LinuxClock final : public Clock {
public:
    Instant now() const override;
    Ticks ticks() const override;
    QDate today() const override;
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                 std::function<void()> call) override;
};
