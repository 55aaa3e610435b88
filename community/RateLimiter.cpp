// SPDX-License-Identifier: MIT
#include "community/RateLimiter.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace community {

namespace {

constexpr std::size_t setCount = 8192;

} // namespace

RateLimiter::RateLimiter(double rate) : m_rate(rate), m_full(float(rate * 60)) {
    std::random_device random;
    m_secret = std::uint64_t(random()) << 32 | random();
    if (rate > 0)
        m_sets.resize(setCount);
}

int RateLimiter::take(std::uint64_t sender, double cost, Time now) {
    if (m_sets.empty())
        return 0;
    const std::uint64_t owner = mixed(sender);
    auto& set = m_sets[owner % setCount];
    auto bucket =
        std::find_if(set.begin(), set.end(), [&](const Bucket& b) { return b.owner == owner; });
    const std::int64_t moment = now.time_since_epoch().count();
    if (bucket == set.end()) {
        bucket = std::min_element(set.begin(), set.end(), [](const Bucket& a, const Bucket& b) {
            return a.filled < b.filled;
        });
        *bucket = {owner, m_full, moment};
    }
    // A clock that was set back gives nothing.
    const double passed = double(std::max<std::int64_t>(0, moment - bucket->filled)) / 1000;
    bucket->tokens = std::min(m_full, bucket->tokens + float(passed * m_rate));
    bucket->filled = moment;
    const float wanted = std::min(m_full, float(cost));
    if (bucket->tokens < wanted)
        return int(std::ceil((wanted - bucket->tokens) / m_rate));
    bucket->tokens -= wanted;
    return 0;
}

// The finishing of MurmurHash3, whose constants spread every bit over all others; never 0, which
// is an empty place.
std::uint64_t RateLimiter::mixed(std::uint64_t sender) const {
    std::uint64_t value = sender ^ m_secret;
    for (const std::uint64_t factor : {0xff51afd7ed558ccdULL, 0xc4ceb9fe1a85ec53ULL}) {
        value ^= value >> 33;
        value *= factor;
    }
    value ^= value >> 33;
    return value == 0 ? 1 : value;
}

} // namespace community
