// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>

/// What keeps the session at the airline alive around the captures.
class SessionKeeper {
public:
    virtual ~SessionKeeper() = default;

    /// Hides the sign-in window, in case it was left on the screen.
    virtual void hideWindow() = 0;
    /// Puts saved cookies back into the web view, once a run.
    virtual QCoro::Task<> restoreCookiesIfNeeded() = 0;
    /// Deletes foreign and tracking cookies, once a day.
    virtual QCoro::Task<> pruneCookiesIfStale() = 0;
    /// Saves the session's cookies; nobody waits for it.
    virtual void snapshotSoon() = 0;
    /// Renews the session through single sign-on, without the user. True when that succeeded.
    virtual QCoro::Task<bool> silentSSORefresh(int maxSteps) = 0;
    /// Signs in with the stored details, where the user allows it. True when signed in.
    virtual QCoro::Task<bool> attemptAutoLogin() = 0;
};
