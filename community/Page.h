// SPDX-License-Identifier: MIT
#pragma once

#include "community/Store.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace community {

/// A whole answer, {"hits":[…]}, newest find first, and where its finds are in it. One that leaves
/// finds out for want of room has "more":true too.
struct Page {
    struct Entry {
        Time reported;
        std::uint32_t begin; ///< of the find in `json`
        std::uint32_t size;
    };

    std::string json;
    std::vector<Entry> finds;
    bool hasMore = false;
};

using PagePtr = std::shared_ptr<const Page>;

/// Of one route's finds, newest first; the oldest are left out when there are too many bytes.
PagePtr pageOf(const std::vector<StoredFind>& finds, std::size_t mostBytes);

/// Of several routes' pages, ordered anew; the oldest are left out when there are too many bytes.
PagePtr merged(const std::vector<PagePtr>& pages, std::size_t mostBytes);

} // namespace community
