// SPDX-License-Identifier: MIT
#include "airline/CookieVault.h"

#include "airline/CookieRules.h"
#include "airline/StoredCookies.h"
#include "core/Keychain.h"
#include "core/Safekeeping.h"
#include "core/TDLog.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pruneInterval = 24h;
/// An open keychain answers in some milliseconds; one that needs its owner takes any time.
constexpr auto keychainPatience = 1s;

bool contains(const QList<WebCookie>& cookies, const QString& name, const QString& domain) {
    return std::any_of(cookies.begin(), cookies.end(), [&](const WebCookie& cookie) {
        return cookie.name == name && cookie.domain == domain;
    });
}

} // namespace

CookieVault::CookieVault(CookieStore& cookies, Keychain& keychain, Safekeeping& kept, Clock& clock,
                         Site site)
    : m_cookies(cookies)
    , m_keychain(keychain)
    , m_kept(kept)
    , m_clock(clock)
    , m_site(std::move(site)) {}

CookieVault::~CookieVault() {
    for (const auto& waiter : std::as_const(m_waiters))
        waiter.resolve(false);
}

void CookieVault::snapshotSoon() {
    m_isSavingWanted = true;
    if (!std::exchange(m_isSaving, true))
        saveWhileWanted();
}

QCoro::Task<> CookieVault::saveWhileWanted() {
    const QPointer self(this);
    while (std::exchange(m_isSavingWanted, false)) {
        co_await save();
        if (!self)
            co_return;
    }
    m_isSaving = false;
    const auto waiters = std::exchange(m_waiters, {});
    for (const auto& waiter : waiters)
        waiter.resolve(true);
}

QCoro::Task<> CookieVault::snapshotCookies() {
    const OneShot<bool> end;
    m_waiters.append(end);
    snapshotSoon();
    co_await end;
}

QCoro::Task<> CookieVault::settled(std::chrono::milliseconds patience) {
    if (!m_isSaving)
        co_return;
    const OneShot<bool> end;
    m_waiters.append(end);
    const auto timer = m_clock.after(patience, [end] { end.resolve(false); });
    co_await end;
}

QCoro::Task<> CookieVault::save() {
    const QPointer self(this);
    const auto all = co_await m_cookies.all();
    if (!self || !all)
        co_return;
    QList<WebCookie> own = *all;
    own.removeIf([this](const WebCookie& cookie) {
        return !SAS::isAirlineDomain(m_site, cookie.domain) ||
               SAS::isPrunableCookie(m_site, cookie.name, cookie.domain);
    });
    // A browser that is signed out must not replace a good session with nothing.
    if (own.isEmpty())
        co_return;
    const QByteArray data = StoredCookies::encode(own);
    const bool saved = co_await m_keychain.saveCookieData(data);
    if (self && saved)
        remember(own);
}

void CookieVault::remember(const QList<WebCookie>& cookies) {
    QList<KnownCookie> known;
    for (const WebCookie& cookie : cookies) {
        if (!isOver(cookie.expires))
            known.append({cookie.name, cookie.domain, cookie.expires});
    }
    const QString text = QString::fromUtf8(StoredCookies::encodeKnown(known));
    if (m_kept.get(Kept::sessionCookies) != text)
        m_kept.set(Kept::sessionCookies, text);
}

/// Whether the browser has all that was saved last, as far as it can still be of use.
bool CookieVault::isWhole(const QList<WebCookie>& live) const {
    const QString text = m_kept.get(Kept::sessionCookies).value_or(QString());
    const auto known = StoredCookies::decodeKnown(text.toUtf8());
    return known && std::all_of(known->begin(), known->end(), [&](const KnownCookie& cookie) {
               return isOver(cookie.expires) || contains(live, cookie.name, cookie.domain);
           });
}

bool CookieVault::isOver(const std::optional<Instant>& expires) const {
    return expires && *expires < m_clock.now();
}

QCoro::Task<> CookieVault::restoreCookiesIfNeeded() {
    if (std::exchange(m_cookiesRestored, true))
        co_return;
    const QPointer self(this);
    const auto live = co_await m_cookies.all();
    if (!self)
        co_return;
    if (!live) {
        // Not knowing what lives, nothing is put over it; the next call tries again.
        m_cookiesRestored = false;
        co_return;
    }
    if (isWhole(*live))
        co_return;
    const OneShot<bool> answer;
    const OneShot<bool> end;
    const auto timer = m_clock.after(keychainPatience, [answer] { answer.resolve(false); });
    putBack(answer).then([end] { end.resolve(true); });
    const bool isAnswered = co_await answer;
    if (isAnswered)
        co_await end;
    else if (self)
        TDLog::note(u"cookie-hvelv: noekkelringen svarer ikke ennaa — gaar videre uten"_s);
}

/// The keychain's answer may come long after the question, so what lives is looked at then.
QCoro::Task<> CookieVault::putBack(OneShot<bool> answer) {
    const QPointer self(this);
    const auto data = co_await m_keychain.loadCookieData();
    answer.resolve(true);
    const auto stored = data ? StoredCookies::decode(*data) : std::nullopt;
    if (!self || !stored)
        co_return;
    const auto live = co_await m_cookies.all();
    if (!self)
        co_return;
    if (!live) {
        m_cookiesRestored = false;
        co_return;
    }
    int restored = 0;
    for (const WebCookie& cookie : *stored) {
        if (!self)
            co_return;
        if (isOver(cookie.expires) || contains(*live, cookie.name, cookie.domain))
            continue;
        const bool taken = co_await m_cookies.set(cookie);
        if (taken)
            ++restored;
    }
    if (restored > 0)
        TDLog::note(u"cookie-hvelv: la tilbake %1 SAS-cookies"_s.arg(restored));
}

QCoro::Task<> CookieVault::pruneCookiesNow() {
    const QPointer self(this);
    m_lastCookiePrune = m_clock.ticks();
    const auto all = co_await m_cookies.all();
    const QList<WebCookie> cookies = all.value_or(QList<WebCookie>());
    for (const WebCookie& cookie : cookies) {
        if (!self)
            co_return;
        if (SAS::isPrunableCookie(m_site, cookie.name, cookie.domain))
            co_await m_cookies.remove(cookie);
    }
}

QCoro::Task<> CookieVault::pruneCookiesIfStale() {
    if (m_lastCookiePrune && m_clock.ticks() - *m_lastCookiePrune < pruneInterval)
        co_return;
    co_await pruneCookiesNow();
}
