// SPDX-License-Identifier: MIT
#include "airline/AutoLogin.h"

#include "airline/Capture.h"
#include "airline/CookieVault.h"
#include "airline/PageScripts.h"
#include "airline/SAS.h"
#include "airline/SessionState.h"
#include "airline/SignInWindow.h"
#include "airline/StandBack.h"
#include "core/Settings.h"
#include "core/TDLog.h"
#include "platform/WebView.h"

#include <QHostAddress>
#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pauseBetweenAttempts = 300s;
constexpr auto formStep = 1500ms;
constexpr int maxSteps = 140;
/// How often the same form comes back before the window is shown, and before it is given up.
constexpr int fillsBeforeWindow = 2;
constexpr int fillsBeforeGivingUp = 3;
/// Steps without the challenge's token before the form is submitted without one, and before the
/// window is shown.
constexpr int pendingBeforeForce = 8;
constexpr int pendingBeforeWindow = 20;

bool isThisMachine(const QString& host) {
    return host == u"localhost" || host.endsWith(u".localhost"_s) ||
           QHostAddress(host).isLoopback();
}

} // namespace

struct AutoLogin::Attempt {
    /// Of `m_windowChanges`, when it began.
    int windowChanges = 0;
    int userFills = 0;
    int passwordFills = 0;
    int captchaPending = 0;
    bool force = false;
    bool windowShown = false;
};

AutoLogin::AutoLogin(SignInContext context, SignInWindow& window, StandBack& standBack,
                     const Settings& settings, Keychain& keychain)
    : m_context(std::move(context))
    , m_window(window)
    , m_standBack(standBack)
    , m_settings(settings)
    , m_keychain(keychain) {
    connect(&m_context.state, &SessionState::loginWindowOpenChanged, this,
            [this] { ++m_windowChanges; });
}

bool AutoLogin::mayFillIn(const Site& site, const QUrl& page) {
    const QString host = page.host().toLower();
    if (host != site.identityHost && !host.endsWith(u'.' + site.identityHost))
        return false;
    return page.scheme() == u"https" || (page.scheme() == u"http" && isThisMachine(host));
}

QCoro::Task<bool> AutoLogin::attemptAutoLogin() {
    const QPointer self(this);
    Attempt attempt;
    attempt.windowChanges = m_windowChanges;
    if (!m_settings.isOn(Setting::autoLogin)) {
        TDLog::note(u"auto-innlogging: hoppet over (slaatt av)"_s);
        co_return false;
    }
    if (standsBack())
        co_return false;
    const auto credentials = co_await m_keychain.load();
    if (!self)
        co_return false;
    if (!credentials) {
        TDLog::note(u"auto-innlogging: hoppet over (ingen detaljer i noekkelringen)"_s);
        co_return false;
    }
    if (!mayBegin(attempt))
        co_return false;
    TDLog::note(u"auto-innlogging: starter (skjema + ev. Turnstile)"_s);
    m_context.capture.end();
    m_window.hide();
    co_await m_context.vault.pruneCookiesNow();
    if (!self || !mayBegin(attempt))
        co_return false;
    m_lastAutoLoginAttempt = m_context.clock.ticks();
    m_context.view.load(QUrl(SAS::loginURL(m_context.site)));
    co_return co_await run(*credentials, attempt);
}

/// Asked after every wait before the page is loaded, since the world may have changed meanwhile.
bool AutoLogin::mayBegin(const Attempt& attempt) const {
    const bool wasJustTried =
        m_lastAutoLoginAttempt &&
        m_context.clock.ticks() - *m_lastAutoLoginAttempt < pauseBetweenAttempts;
    return !userTookOver(attempt) && !wasJustTried && !standsBack();
}

/// Also when the window has been closed again: what the user did in it is not to be undone.
bool AutoLogin::userTookOver(const Attempt& attempt) const {
    return m_context.state.isLoginWindowOpen() || attempt.windowChanges != m_windowChanges;
}

bool AutoLogin::standsBack() const {
    if (!m_standBack.isOn())
        return false;
    TDLog::note(u"auto-innlogging: hoppet over (SAS ber oss vente)"_s);
    return true;
}

QCoro::Task<bool> AutoLogin::run(Credentials credentials, Attempt attempt) {
    const QPointer self(this);
    for (int i = 0; i < maxSteps; ++i) {
        co_await m_context.clock.sleep(formStep);
        // The user may have opened the window meanwhile, and is not to be typed over.
        if (!self || userTookOver(attempt))
            co_return false;
        if (mayFillIn(m_context.site, m_context.view.documentUrl()) && standsBack())
            co_return giveUp(attempt);
        const auto answer = co_await autoLoginStep(credentials, attempt.force);
        if (!self || userTookOver(attempt))
            co_return false;
        if (answer == u"done"_s) {
            if (attempt.windowShown)
                m_window.hide();
            m_context.state.lastSessionRefresh = m_context.clock.ticks();
            TDLog::note(u"auto-innlogging: fullfoert"_s);
            m_context.vault.snapshotSoon();
            co_return true;
        }
        if (answer == u"error"_s) {
            TDLog::note(u"auto-innlogging: synlig feilmelding i skjemaet — gir opp"_s);
            co_return giveUp(attempt);
        }
        if (answer == u"filled-user"_s || answer == u"filled-pass"_s) {
            ++(answer == u"filled-user"_s ? attempt.userFills : attempt.passwordFills);
            if (isStuck(attempt)) {
                TDLog::note(u"auto-innlogging: samme skjema 3 ganger uten fremgang — gir opp"_s);
                co_return giveUp(attempt);
            }
            attempt.force = false;
        } else if (answer == u"captcha-pending"_s) {
            ++attempt.captchaPending;
            if (!attempt.windowShown && attempt.captchaPending >= pendingBeforeForce)
                attempt.force = true;
            if (!attempt.windowShown && attempt.captchaPending >= pendingBeforeWindow)
                showWindow(attempt, u"SAS vil vite at du er et menneske. Løs oppgaven på siden, "
                                    u"så fortsetter innloggingen av seg selv."_s);
        }
    }
    TDLog::note(u"auto-innlogging: ga opp etter ~210 s (Turnstile/ingen fremgang)"_s);
    co_return giveUp(attempt);
}

/// True when the same form has come back too often. Before that the user gets to see it.
bool AutoLogin::isStuck(Attempt& attempt) {
    const int most = std::max(attempt.userFills, attempt.passwordFills);
    if (most >= fillsBeforeGivingUp)
        return true;
    if (most >= fillsBeforeWindow && !attempt.windowShown) {
        showWindow(attempt, u"Innloggingen kommer ikke videre av seg selv. Se hva siden spør om, "
                            u"og logg inn her."_s);
        attempt.captchaPending = 0;
    }
    return false;
}

void AutoLogin::showWindow(Attempt& attempt, const QString& reason) {
    m_window.showForHelp(reason);
    attempt.windowShown = true;
    attempt.userFills = 0;
    attempt.passwordFills = 0;
}

/// The window stays for the user, and rounds wait for it, unless the user has closed it.
bool AutoLogin::giveUp(const Attempt& attempt) {
    if (attempt.windowShown && m_window.isVisible())
        m_context.state.setLoginWindowOpen(true);
    return false;
}

QCoro::Task<std::optional<QString>> AutoLogin::autoLoginStep(Credentials credentials, bool force) {
    const QString host = PageScripts::jsString(m_context.site.identityHost);
    const QString domain = PageScripts::jsString(m_context.site.domain);
    if (!mayFillIn(m_context.site, m_context.view.documentUrl())) {
        // Whatever page this is, it gets no details; it can only be the end of the way.
        const QString question = PageScripts::call(u"sso-state.js"_s, {host, domain});
        const auto state = co_await m_context.view.evaluate(question);
        co_return state == u"done"_s ? state : u"waiting"_s;
    }
    const QString script =
        PageScripts::call(u"auto-login-form.js"_s, {PageScripts::jsString(credentials.user),
                                                    PageScripts::jsString(credentials.password),
                                                    force ? u"true"_s : u"false"_s, host, domain});
    co_return co_await m_context.view.evaluate(script);
}
