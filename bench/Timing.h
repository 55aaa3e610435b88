// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include <algorithm>
#include <chrono>

using SteadyClock = std::chrono::steady_clock;
using TimePoint = SteadyClock::time_point;

inline double secondsFrom(TimePoint start, TimePoint end) {
    return std::chrono::duration<double>(end - start).count();
}

/// Of at least one value.
inline double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}
