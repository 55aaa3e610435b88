// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SASLoginStatus.h"

#include <QObject>

#include <optional>

/// How the user came to be signed out, as far as it helps to tell them.
enum class SignOut {
    /// The session could not be renewed.
    plain,
    /// Automatic sign-in got as far as the window, which is open for the user.
    windowWaits,
    /// Automatic sign-in is switched on and has details, and did not get in.
    autoLoginFailed,
};

/// The one place that holds the state of the session, shared by everybody who changes it.
class SessionState : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    const SASLoginStatus& loginStatus() const { return m_loginStatus; }
    void setLoginStatus(const SASLoginStatus& status);

    /// No page of the site could be fetched of late: there is no network, or the site is down.
    bool isSiteUnreachable() const { return m_isSiteUnreachable; }
    void setSiteUnreachable(bool unreachable);

    /// The user is signing in, in the visible window.
    bool isLoginWindowOpen() const { return m_isLoginWindowOpen; }
    void setLoginWindowOpen(bool open);

    /// The session is dead and could not be renewed; `autoLoginFailed` says that automatic sign-in
    /// is switched on and had details to use. It is `signedOut` on the change into that state only.
    void setLoggedOut(bool autoLoginFailed);

    /// When the session was last renewed in this run; absent if never.
    std::optional<Ticks> lastSessionRefresh;

Q_SIGNALS:
    void loginStatusChanged();
    void siteUnreachableChanged();
    void loginWindowOpenChanged();
    /// The user should be told.
    void signedOut(SignOut how);

private:
    SASLoginStatus m_loginStatus;
    bool m_isSiteUnreachable = false;
    bool m_isLoginWindowOpen = false;
};
