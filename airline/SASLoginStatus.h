// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

/// What is known of the session at the airline.
struct SASLoginStatus {
    enum class Case {
        /// A lookup or a confirmed sign-in succeeded, last at `confirmed`.
        loggedIn,
        /// Nothing has been checked since the start.
        unknown,
        /// A verification runs, or a sign-in has ended and is not yet confirmed.
        checking,
        /// The session is dead and could not be renewed.
        loggedOut,
    };

    Case state = Case::unknown;
    /// Set with `loggedIn` only.
    Instant confirmed{};

    static SASLoginStatus loggedIn(Instant confirmed) { return {Case::loggedIn, confirmed}; }
    static SASLoginStatus unknown() { return {}; }
    static SASLoginStatus checking() { return {Case::checking, {}}; }
    static SASLoginStatus loggedOut() { return {Case::loggedOut, {}}; }

    bool isLoggedOut() const { return state == Case::loggedOut; }
    bool operator==(const SASLoginStatus&) const = default;
};
