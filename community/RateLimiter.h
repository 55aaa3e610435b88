// SPDX-License-Identifier: MIT
#pragma once

#include "community/Time.h"

#include <array>
#include <cstdint>
#include <vector>

namespace community {

/// A token bucket for each sender, in a table that does not grow and holds no address: senders are
/// known by a number mixed with a secret of this run. When the table is full the bucket that was
/// asked last longest ago makes room.
class RateLimiter {
public:
    /// `rate`: tokens a second; a bucket holds a minute's worth. 0 is no limit.
    explicit RateLimiter(double rate);

    /// Takes `cost` tokens, or a full bucket where it costs more. Returns the whole seconds to
    /// wait when there are too few, and then takes none; 0 otherwise.
    int take(std::uint64_t sender, double cost, Time now);

private:
    struct Bucket {
        std::uint64_t owner = 0;
        float tokens = 0;
        std::int64_t filled = 0; // milliseconds since 1970
    };
    static constexpr std::size_t ways = 8;

    std::uint64_t mixed(std::uint64_t sender) const;

    double m_rate;
    float m_full;
    std::uint64_t m_secret;
    std::vector<std::array<Bucket, ways>> m_sets;
};

} // namespace community
