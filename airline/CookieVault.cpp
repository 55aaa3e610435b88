// SPDX-License-Identifier: MIT
#include "airline/CookieVault.h"

#include "airline/CookieRules.h"
#include "airline/StoredCookies.h"
#include "core/Keychain.h"
#include "core/TDLog.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pruneInterval = 24h;

bool contains(const QList<WebCookie>& cookies, const WebCookie& wanted) {
    return std::any_of(cookies.begin(), cookies.end(), [&wanted](const WebCookie& cookie) {
        return cookie.name == wanted.name && cookie.domain == wanted.domain;
    });
}

} // namespace

CookieVault::CookieVault(CookieStore& cookies, Keychain& keychain, Clock& clock, Site site)
    : m_cookies(cookies), m_keychain(keychain), m_clock(clock), m_site(std::move(site)) {}

QCoro::Task<> CookieVault::snapshotCookies() {
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
    co_await m_keychain.saveCookieData(data);
}

QCoro::Task<> CookieVault::restoreCookiesIfNeeded() {
    if (std::exchange(m_cookiesRestored, true))
        co_return;
    const QPointer self(this);
    const auto data = co_await m_keychain.loadCookieData();
    const auto stored = data ? StoredCookies::decode(*data) : std::nullopt;
    if (!self || !stored)
        co_return;
    const auto live = co_await m_cookies.all();
    if (!self)
        co_return;
    if (!live) {
        // Not knowing what lives, nothing is put over it; the next call tries again.
        m_cookiesRestored = false;
        co_return;
    }
    int restored = 0;
    for (const WebCookie& cookie : *stored) {
        if (!self)
            co_return;
        const bool isOver = cookie.expires && *cookie.expires < m_clock.now();
        if (isOver || contains(*live, cookie))
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
