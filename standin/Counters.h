// SPDX-License-Identifier: MIT
#pragma once

namespace standin {

/// What the stand-in site has done since it was created.
struct Counters {
    int searchPages = 0; ///< search pages shown with their script
    int offers = 0;      ///< answered requests for the page's own leg, both endpoints
    int calendar = 0;    ///< answered requests for neighbouring days

    bool operator==(const Counters&) const = default;
};

} // namespace standin
