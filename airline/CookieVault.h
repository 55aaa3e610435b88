// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "platform/Clock.h"
#include "platform/CookieStore.h"

#include <QCoroTask>
#include <QObject>

#include <optional>

class Keychain;
class Safekeeping;

/// Keeps the airline's cookies in the keychain, so that the session outlives the web view's own
/// store, and keeps that store clean of everything else.
///
/// A keychain may be locked, and its owner away. So it is only asked for what the browser lacks
/// (which cookies there should be is remembered in the database, without their values), an answer
/// is awaited for a second, and the cookies are saved beside everything else.
class CookieVault : public QObject {
    Q_OBJECT
public:
    /// All but `site` must outlive the vault and every operation begun here.
    CookieVault(CookieStore& cookies, Keychain& keychain, Safekeeping& kept, Clock& clock,
                Site site);
    ~CookieVault() override;

    /// Begins to save the airline's cookies as they are now; when there are none, what is saved
    /// stays as it is. While that is under way already, it is done once more afterwards.
    void snapshotSoon();
    /// The same, for those who want its end. A locked keychain makes that a minute.
    QCoro::Task<> snapshotCookies();
    /// Ends when no saving is under way, and after `patience` in any case.
    QCoro::Task<> settled(std::chrono::milliseconds patience);
    /// Once a run, unless the browser's cookies could not be read: when the store lacks any that
    /// were saved last and whose time has not run out, puts saved cookies back where the store has
    /// none of the same name and domain. The keychain is waited for at most a second; when it
    /// answers later, its cookies are put back then.
    QCoro::Task<> restoreCookiesIfNeeded();
    /// Deletes foreign and tracking cookies.
    QCoro::Task<> pruneCookiesNow();
    /// The same, unless that was done less than a day ago.
    QCoro::Task<> pruneCookiesIfStale();

private:
    QCoro::Task<> saveWhileWanted();
    QCoro::Task<> save();
    QCoro::Task<> putBack(OneShot<bool> answer);
    void remember(const QList<WebCookie>& cookies);
    bool isWhole(const QList<WebCookie>& live) const;
    bool isOver(const std::optional<Instant>& expires) const;

    CookieStore& m_cookies;
    Keychain& m_keychain;
    Safekeeping& m_kept;
    Clock& m_clock;
    Site m_site;
    std::optional<Ticks> m_lastCookiePrune;
    bool m_cookiesRestored = false;
    bool m_isSaving = false;
    /// Once more, when what is under way has ended.
    bool m_isSavingWanted = false;
    /// Those who wait until nothing is under way.
    QList<OneShot<bool>> m_waiters;
};
