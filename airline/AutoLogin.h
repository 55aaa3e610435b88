// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Keychain.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <optional>

class Capture;
class CookieVault;
class Database;
class SessionState;
class SignInWindow;
class WebView;

/// Signs in with the details from the keychain, by filling in the identity provider's form; shows
/// the window when its challenge does not let a program through.
class AutoLogin : public QObject {
    Q_OBJECT
public:
    /// All but `site` must outlive this object.
    AutoLogin(WebView& view, Clock& clock, Database& database, Keychain& keychain,
              SessionState& state, Capture& capture, CookieVault& vault, SignInWindow& window,
              Site site);

    /// True when the browser is signed in. At once false when automatic sign-in is switched off,
    /// has no details, was tried less than five minutes ago, or the user is signing in.
    QCoro::Task<bool> attemptAutoLogin();

    /// Whether the sign-in details may be typed into the page at this address: the identity
    /// provider's host or a sub-domain of it, over HTTPS or on this machine.
    static bool mayFillIn(const Site& site, const QUrl& page);

private:
    struct Attempt;

    QCoro::Task<std::optional<QString>> autoLoginStep(Credentials credentials, bool force);
    QCoro::Task<bool> run(Credentials credentials);
    void showWindow(Attempt& attempt, const QString& reason);
    bool giveUp(const Attempt& attempt);
    bool isStuck(Attempt& attempt);

    WebView& m_view;
    Clock& m_clock;
    Database& m_database;
    Keychain& m_keychain;
    SessionState& m_state;
    Capture& m_capture;
    CookieVault& m_vault;
    SignInWindow& m_window;
    Site m_site;
    std::optional<Ticks> m_lastAutoLoginAttempt;
};
