// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Keychain.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class Capture;
class CookieVault;
class SessionState;
class Settings;
class SignInWindow;
class WebView;

/// Signs in with the details from the keychain, by filling in the identity provider's form; shows
/// the window when its challenge does not let a program through.
class AutoLogin : public QObject {
    Q_OBJECT
public:
    /// All but `site` must outlive this object. `mustStandBack`, never when absent, is asked before
    /// anything is tried and before every step that fills in something; true ends the attempt.
    AutoLogin(WebView& view, Clock& clock, const Settings& settings, Keychain& keychain,
              SessionState& state, Capture& capture, CookieVault& vault, SignInWindow& window,
              Site site, std::function<bool()> mustStandBack = {});

    /// True when the browser is signed in. At once false when automatic sign-in is switched off,
    /// has no details, loaded its page less than five minutes ago, or must stand back; false, too,
    /// when the user has opened the sign-in window since this began, even if it is closed again.
    QCoro::Task<bool> attemptAutoLogin();

    /// Whether the sign-in details may be typed into the page at this address: the identity
    /// provider's host or a sub-domain of it, over HTTPS or on this machine.
    static bool mayFillIn(const Site& site, const QUrl& page);

private:
    struct Attempt;

    QCoro::Task<std::optional<QString>> autoLoginStep(Credentials credentials, bool force);
    QCoro::Task<bool> run(Credentials credentials, Attempt attempt);
    bool mayBegin(const Attempt& attempt) const;
    bool userTookOver(const Attempt& attempt) const;
    bool standsBack() const;
    void showWindow(Attempt& attempt, const QString& reason);
    bool giveUp(const Attempt& attempt);
    bool isStuck(Attempt& attempt);

    WebView& m_view;
    Clock& m_clock;
    const Settings& m_settings;
    Keychain& m_keychain;
    SessionState& m_state;
    Capture& m_capture;
    CookieVault& m_vault;
    SignInWindow& m_window;
    Site m_site;
    std::function<bool()> m_mustStandBack;
    /// How often the user's window was opened or closed.
    int m_windowChanges = 0;
    /// When one last loaded its page.
    std::optional<Ticks> m_lastAutoLoginAttempt;
};
