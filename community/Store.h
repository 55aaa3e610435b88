// SPDX-License-Identifier: MIT
#pragma once

#include "community/Time.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace community {

/// Puts a find into the store, or drops it.
struct Change {
    std::string identity; ///< fare key, "#", cabin
    std::string route;    ///< "AAA-BBB"
    std::string json;     ///< the find as it is sent out; empty drops it

    bool operator==(const Change&) const = default;
};

struct StoredFind {
    std::string json;
    Time reported; ///< last; by the service's clock

    bool operator==(const StoredFind&) const = default;
};

/// The store does not answer; nothing of the call is promised to be stored.
struct StoreError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Where finds are kept. Calls wait for the answer, come from one thread, and throw StoreError; a
/// later call tries again.
class Store {
public:
    /// Finds of one route that are read at most.
    static constexpr std::size_t mostOfRoute = 200;

    virtual ~Store() = default;

    /// In order and in one go. A find that is there already is replaced, and lives anew.
    virtual void apply(const std::vector<Change>& changes, Time now) = 0;
    /// For each route its finds that have not expired, newest first.
    virtual std::vector<std::vector<StoredFind>> newest(const std::vector<std::string>& routes,
                                                        Time now) = 0;
    virtual void ping() = 0;
};

/// Makes the store that a service is to use, for at most this many finds; may throw StoreError.
using StoreMaker = std::function<std::unique_ptr<Store>(std::size_t most)>;

} // namespace community
