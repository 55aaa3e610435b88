// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SignInContext.h"
#include "core/Keychain.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <optional>

class Settings;
class SignInWindow;
class StandBack;

/// Signs in with the details from the keychain, by filling in the identity provider's form; shows
/// the window when its challenge does not let a program through.
class AutoLogin : public QObject {
    Q_OBJECT
public:
    /// All must outlive this object. `window` shows the context's web view. `standBack` is asked
    /// before anything is tried and before every step that fills in something, and ends the
    /// attempt.
    AutoLogin(SignInContext context, SignInWindow& window, StandBack& standBack,
              const Settings& settings, Keychain& keychain);

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

    SignInContext m_context;
    SignInWindow& m_window;
    StandBack& m_standBack;
    const Settings& m_settings;
    Keychain& m_keychain;
    /// How often the user's window was opened or closed.
    int m_windowChanges = 0;
    /// When one last loaded its page.
    std::optional<Ticks> m_lastAutoLoginAttempt;
};
