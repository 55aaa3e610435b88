// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QObject>

#include <optional>

class CookieStore;
class Keychain;

/// Keeps the airline's cookies in the keychain, so that the session outlives the web view's own
/// store, and keeps that store clean of everything else.
class CookieVault : public QObject {
    Q_OBJECT
public:
    /// All but `site` must outlive the vault and every operation begun here.
    CookieVault(CookieStore& cookies, Keychain& keychain, Clock& clock, Site site);

    /// Saves the airline's cookies; when there are none, what is saved stays as it is.
    QCoro::Task<> snapshotCookies();
    /// Once a run: puts saved cookies back where the store has none of the same name and domain
    /// and the time has not run out.
    QCoro::Task<> restoreCookiesIfNeeded();
    /// Deletes foreign and tracking cookies.
    QCoro::Task<> pruneCookiesNow();
    /// The same, unless that was done less than a day ago.
    QCoro::Task<> pruneCookiesIfStale();

private:
    CookieStore& m_cookies;
    Keychain& m_keychain;
    Clock& m_clock;
    Site m_site;
    std::optional<Ticks> m_lastCookiePrune;
    bool m_cookiesRestored = false;
};
