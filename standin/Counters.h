// SPDX-License-Identifier: MIT
#pragma once

namespace standin {

/// What the stand-in site has done since it was created.
struct Counters {
    int searchPages = 0;       ///< search pages shown with their script
    int offers = 0;            ///< answered requests for the page's own leg, both endpoints
    int calendar = 0;          ///< answered requests for neighbouring days
    int refused = 0;           ///< requests for either that Options::refusal refused
    int signInPages = 0;       ///< search pages that led to a sign-in instead
    int passwordSignIns = 0;   ///< right passwords
    int rejectedPasswords = 0; ///< wrong passwords or user names
    int silentSignIns = 0;     ///< sign-ins by single sign-on, without a form
    int forms = 0;             ///< forms shown by the identity provider

    bool operator==(const Counters&) const = default;
};

} // namespace standin
