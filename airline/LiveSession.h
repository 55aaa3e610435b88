// SPDX-License-Identifier: MIT
#pragma once

#include "airline/AutoLogin.h"
#include "airline/CookieVault.h"
#include "airline/NavHosts.h"
#include "airline/SessionKeeper.h"
#include "airline/SignInWindow.h"
#include "airline/SingleSignOn.h"

class Database;
class StandBack;

/// Everything that keeps the session alive, put together around one web view.
class LiveSession final : public SessionKeeper {
public:
    /// All but `site` must outlive this object.
    LiveSession(WebView& view, HostWindow& window, Clock& clock, Database& database,
                Keychain& keychain, SessionState& state, StandBack& standBack, Capture& capture,
                const Site& site);

    SignInWindow& window() { return m_window; }

    void hideWindow() override { m_window.hide(); }
    QCoro::Task<> restoreCookiesIfNeeded() override { return m_vault.restoreCookiesIfNeeded(); }
    QCoro::Task<> pruneCookiesIfStale() override { return m_vault.pruneCookiesIfStale(); }
    void snapshotSoon() override { m_vault.snapshotSoon(); }
    /// Waits until nothing of the session is being saved, at most `patience`.
    QCoro::Task<> saved(std::chrono::milliseconds patience) { return m_vault.settled(patience); }
    QCoro::Task<bool> silentSSORefresh(int maxSteps) override {
        return m_singleSignOn.silentSSORefresh(maxSteps);
    }
    QCoro::Task<bool> attemptAutoLogin() override { return m_autoLogin.attemptAutoLogin(); }

private:
    NavHosts m_navHosts;
    CookieVault m_vault;
    SignInContext m_context;
    SignInWindow m_window;
    SingleSignOn m_singleSignOn;
    AutoLogin m_autoLogin;
};
