// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SASLoginStatus.h"

/// How it stands between Tindra and the airline, as one word.
enum class Standing {
    signedOut,
    /// The site asks to be left alone.
    refused,
    checking,
    /// No page of the site could be fetched of late.
    unreachable,
    signedIn,
    unknown,
};

/// What counts where several things are true at once, everywhere: that nobody is signed in comes
/// first, since there the user can do something, and nothing else helps before that; then that the
/// site refuses, since as long as it does nothing is tried. What is being checked may be another in
/// a moment. A site that cannot be reached hides what is known of the session.
constexpr Standing standing(SASLoginStatus::Case login, bool isRefused, bool isUnreachable) {
    using Case = SASLoginStatus::Case;
    if (login == Case::loggedOut)
        return Standing::signedOut;
    if (isRefused)
        return Standing::refused;
    if (login == Case::checking)
        return Standing::checking;
    if (isUnreachable)
        return Standing::unreachable;
    return login == Case::loggedIn ? Standing::signedIn : Standing::unknown;
}
