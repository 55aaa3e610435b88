// SPDX-License-Identifier: MIT
#include "airline/SingleSignOn.h"

#include "airline/Capture.h"
#include "airline/CookieVault.h"
#include "airline/NavHosts.h"
#include "airline/PageScripts.h"
#include "airline/SAS.h"
#include "airline/SessionState.h"
#include "core/TDLog.h"
#include "platform/WebView.h"

#include <QDateTime>
#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto landingStep = 1500ms;
constexpr auto pauseBeforeSecondLook = 3s;

} // namespace

QCoro::Task<bool> SingleSignOn::silentSSORefresh(int maxSteps) {
    const QPointer self(this);
    const QString before = co_await authCookieSummary();
    if (!self)
        co_return false;
    auto answer = co_await silentSSOAttempt(maxSteps);
    if (!self || m_context.state.isLoginWindowOpen())
        co_return false;
    if (answer == u"form"_s) {
        TDLog::note(u"SSO-fornyelse: skjema vises — dobbeltsjekker med ny runde"_s);
        co_await m_context.clock.sleep(pauseBeforeSecondLook);
        if (!self)
            co_return false;
        answer = co_await silentSSOAttempt(maxSteps);
        if (!self || m_context.state.isLoginWindowOpen())
            co_return false;
        if (answer == u"form"_s) {
            const QString now = co_await authCookieSummary();
            TDLog::note(u"SSO-diagnose: cookies foer: "_s + before);
            TDLog::note(u"SSO-diagnose: cookies naa: "_s + now);
            TDLog::note(u"SSO-fornyelse: skjema vises — SSO-oekten er doed"_s);
            co_return false;
        }
    }
    if (answer != u"done"_s) {
        TDLog::note(u"SSO-fornyelse: timeout uten avklaring"_s);
        co_return false;
    }
    noteSuccess();
    co_return true;
}

void SingleSignOn::noteSuccess() const {
    if (m_context.navHosts.visited(m_context.site.identityHost))
        TDLog::note(u"SSO-fornyelse: OK (stille, via auth0 — fristen rullet)"_s);
    else
        TDLog::note(u"SSO-fornyelse: OK (stille) — "_s + m_context.site.identityHost +
                    u" ble IKKE besoekt; SSO-fristen er neppe rullet"_s);
}

QCoro::Task<std::optional<QString>> SingleSignOn::silentSSOAttempt(int maxSteps) {
    const QPointer self(this);
    if (m_context.state.isLoginWindowOpen())
        co_return std::nullopt;
    m_context.capture.end();
    co_await m_context.vault.pruneCookiesNow();
    if (!self || m_context.state.isLoginWindowOpen())
        co_return std::nullopt;
    m_context.navHosts.clear();
    m_context.view.load(QUrl(SAS::loginURL(m_context.site)));
    const QString script =
        PageScripts::call(u"sso-state.js"_s, {PageScripts::jsString(m_context.site.identityHost),
                                              PageScripts::jsString(m_context.site.domain)});
    for (int i = 0; i < maxSteps; ++i) {
        co_await m_context.clock.sleep(landingStep);
        if (!self || m_context.state.isLoginWindowOpen())
            co_return std::nullopt;
        if (m_context.navHosts.isEmpty())
            continue;
        const auto state = co_await m_context.view.evaluate(script);
        if (!self)
            co_return std::nullopt;
        if (state == u"done"_s || state == u"form"_s)
            co_return state;
    }
    co_return std::nullopt;
}

QCoro::Task<QString> SingleSignOn::authCookieSummary() {
    const QString domain = m_context.site.identityDomain;
    const auto found = co_await m_context.view.cookies().all();
    const QList<WebCookie> cookies = found.value_or(QList<WebCookie>());
    QStringList descriptions;
    for (const WebCookie& cookie : cookies) {
        if (!cookie.domain.contains(domain))
            continue;
        const QString expiry =
            cookie.expires ? QDateTime::fromSecsSinceEpoch(
                                 static_cast<qint64>(secondsSince1970(*cookie.expires)), Qt::UTC)
                                 .toString(Qt::ISODate)
                           : u"(økt)"_s;
        descriptions.append(cookie.name + u'→' + expiry);
    }
    if (descriptions.isEmpty())
        co_return u"INGEN "_s + domain + u"-cookies"_s;
    descriptions.sort();
    co_return descriptions.join(u' ');
}
