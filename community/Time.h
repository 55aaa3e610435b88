// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace community {

/// A moment of the wall clock, UTC.
using Time = std::chrono::sys_time<std::chrono::milliseconds>;

/// The service's only source of wall-clock time; may be called from any thread.
using Clock = std::function<Time()>;

inline Time systemTime() {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

/// How long a find is shown after it was last reported.
inline constexpr std::chrono::minutes lifetime{90};

} // namespace community
