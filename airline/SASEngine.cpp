// SPDX-License-Identifier: MIT
#include "airline/SASEngine.h"

#include "airline/SessionKeeper.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/WebView.h"

#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The sign-in challenge and the site itself are friendlier to a well-known browser of the family.
const QString userAgent = u"Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 "
                          u"(KHTML, like Gecko) Version/17.4 Safari/605.1.15"_s;
constexpr auto captureTimeout = 60s;
constexpr auto probeTimeout = 45s;
constexpr auto waitStep = 1s;
/// A machine that wakes up needs some seconds for its network.
constexpr int triesToReachSite = 3;
constexpr auto pauseBetweenTries = 10s;
constexpr auto sessionAge = 6h;
constexpr int renewalSteps = 12;
/// Empty captures before any success after which the session is taken to be dead.
constexpr int strikesThatDecide = 3;

} // namespace

SASEngine::SASEngine(WebView& view, Clock& clock, Database& database, Keychain& keychain,
                     SessionState& state, Capture& capture, SessionKeeper* keeper)
    : m_view(view)
    , m_clock(clock)
    , m_database(database)
    , m_keychain(keychain)
    , m_state(state)
    , m_capture(capture)
    , m_keeper(keeper) {
    TDLog::note(view.disableTrackingPrevention()
                    ? u"ITP slaatt av for soeke-webviewen"_s
                    : u"ITP: fant ikke av-bryteren i WebKit — sporingsvern forblir paa"_s);
    view.setUserAgent(userAgent);
    connect(&view, &WebView::loadFailed, this, [this] { m_loadFailed = true; });
}

void SASEngine::setRoundQuestion(std::function<bool()> roundIsRunning) {
    m_roundIsRunning = std::move(roundIsRunning);
}

void SASEngine::confirmNow() {
    m_state.setLoginStatus(SASLoginStatus::loggedIn(m_clock.now()));
}

QCoro::Task<bool> SASEngine::probeLogin() {
    const QString tomorrow = m_clock.today().addDays(1).toString(u"yyyyMMdd"_s);
    const auto body = co_await lookUp(u"OSL"_s, u"CPH"_s, tomorrow, false, probeTimeout);
    co_return body.has_value();
}

/// One capture, tried again for a while when its page cannot be fetched.
QCoro::Task<Capture::Body> SASEngine::lookUp(QString origin, QString dest, QString outDate,
                                             bool award, std::chrono::milliseconds timeout) {
    const QPointer self(this);
    for (int left = triesToReachSite - 1;; --left) {
        m_loadFailed = false;
        auto body = co_await m_capture.capture(origin, dest, outDate, award, timeout);
        if (!self)
            co_return std::nullopt;
        if (body || !m_loadFailed)
            m_state.setSiteUnreachable(false);
        if (body || !m_loadFailed || left == 0 || m_state.isLoginWindowOpen())
            co_return body;
        co_await m_clock.sleep(pauseBetweenTries);
        if (!self || m_state.isLoginWindowOpen())
            co_return std::nullopt;
    }
}

/// Without a page there is nothing to learn about the session.
bool SASEngine::hasLostContact() {
    if (m_loadFailed && !m_state.isLoginWindowOpen())
        m_state.setSiteUnreachable(true);
    return m_loadFailed;
}

QCoro::Task<> SASEngine::verifyLogin() {
    if (m_state.isLoginWindowOpen() || m_probing || (m_roundIsRunning && m_roundIsRunning()))
        co_return;
    const QPointer self(this);
    m_probing = true;
    co_await verify();
    if (!self)
        co_return;
    m_probing = false;
    leavePage();
}

QCoro::Task<> SASEngine::verify() {
    const QPointer self(this);
    const SASLoginStatus before = m_state.loginStatus();
    const auto forget = [this, before] {
        using Case = SASLoginStatus::Case;
        m_state.setLoginStatus(before.state == Case::checking ? SASLoginStatus::unknown() : before);
    };
    m_state.setLoginStatus(SASLoginStatus::checking());
    if (m_keeper) {
        m_keeper->hideWindow();
        co_await m_keeper->restoreCookiesIfNeeded();
    }
    if (!self)
        co_return;
    bool confirmed = co_await confirm(false);
    // When the user opens the window, the verdict is theirs to make.
    if (!self || confirmed || m_state.isLoginWindowOpen())
        co_return;
    if (hasLostContact()) {
        forget();
        co_return;
    }
    if (m_keeper) {
        const bool silently = co_await m_keeper->silentSSORefresh(renewalSteps);
        if (self && silently)
            confirmed = co_await confirm(true);
        if (!self || confirmed || m_state.isLoginWindowOpen())
            co_return;
        const bool signedIn = co_await m_keeper->attemptAutoLogin();
        if (self && signedIn)
            confirmed = co_await confirm(false);
        if (!self || confirmed)
            co_return;
    }
    if (hasLostContact())
        forget();
    else
        co_await reportLoggedOut();
}

/// A lookup that succeeds confirms the session and saves its cookies; `isRenewed` says that it was
/// renewed just before.
QCoro::Task<bool> SASEngine::confirm(bool isRenewed) {
    const QPointer self(this);
    if (m_state.isLoginWindowOpen())
        co_return false;
    const bool answered = co_await probeLogin();
    if (!self || !answered)
        co_return false;
    if (isRenewed)
        m_state.lastSessionRefresh = m_clock.ticks();
    confirmNow();
    if (m_keeper)
        co_await m_keeper->snapshotCookies();
    co_return true;
}

QCoro::Task<> SASEngine::reportLoggedOut() {
    const QPointer self(this);
    bool autoLoginFailed = false;
    if (m_database.isOn(u"auto_login"_s, false))
        autoLoginFailed = (co_await m_keychain.load()).has_value();
    if (self)
        m_state.setLoggedOut(autoLoginFailed);
}

QCoro::Task<> SASEngine::refreshSessionIfStale() {
    if (m_state.isLoginWindowOpen() || !m_keeper)
        co_return;
    const QPointer self(this);
    co_await m_keeper->restoreCookiesIfNeeded();
    if (!self ||
        (m_state.lastSessionRefresh && m_clock.ticks() - *m_state.lastSessionRefresh < sessionAge))
        co_return;
    const bool renewed = co_await m_keeper->silentSSORefresh(renewalSteps);
    if (!self || !renewed || m_state.isLoginWindowOpen())
        co_return;
    const bool answered = co_await probeLogin();
    if (!self || m_state.isLoginWindowOpen())
        co_return;
    if (!answered) {
        TDLog::note(u"SSO-fornyelse: SSO OK men offers ga INGEN data — poeng-sesjonen er doed, "
                    u"trenger ekte innlogging"_s);
        co_return;
    }
    m_state.lastSessionRefresh = m_clock.ticks();
    confirmNow();
    TDLog::note(u"SSO-fornyelse: bekreftet med ekte oppslag"_s);
    co_await m_keeper->snapshotCookies();
}

/// Silently if possible, else with the stored sign-in details.
QCoro::Task<bool> SASEngine::renew() {
    if (!m_keeper)
        co_return false;
    const QPointer self(this);
    bool renewed = co_await m_keeper->silentSSORefresh(renewalSteps);
    if (self && !renewed)
        renewed = co_await m_keeper->attemptAutoLogin();
    if (self && renewed)
        m_state.lastSessionRefresh = m_clock.ticks();
    co_return renewed;
}

/// A results page left behind would run its scripts at full speed until the next round.
void SASEngine::leavePage() {
    if (!m_state.isLoginWindowOpen())
        m_view.unload();
}

QCoro::Task<FetchedLegs> SASEngine::fetchLegs(QList<LegGroup> legs, bool award,
                                              AbortQuestion shouldAbort, Progress progress) {
    const QPointer self(this);
    auto fetched = co_await fetch(legs, award, shouldAbort, progress);
    if (self)
        leavePage();
    co_return fetched;
}

QCoro::Task<FetchedLegs> SASEngine::fetch(QList<LegGroup> legs, bool award,
                                          AbortQuestion shouldAbort, Progress progress) {
    const QPointer self(this);
    FetchedLegs fetched;
    // A verification that began before this round has the web view, and would take the end of its
    // lookup for a dead session.
    while (m_state.isLoginWindowOpen() || m_probing) {
        if (m_state.isLoginWindowOpen())
            progress(waitingLabel(), {});
        co_await m_clock.sleep(waitStep);
        if (!self)
            co_return fetched;
    }
    if (m_keeper) {
        m_keeper->hideWindow();
        co_await m_keeper->restoreCookiesIfNeeded();
        if (!self)
            co_return fetched;
        co_await m_keeper->pruneCookiesIfStale();
        if (!self)
            co_return fetched;
        co_await refreshSessionIfStale();
        if (!self)
            co_return fetched;
    }

    int successes = 0;
    int strikes = 0;
    for (const LegGroup& leg : legs) {
        // A route that comes twice adds to what it has.
        FetchedDates& dates = fetched[leg.origin + u'-' + leg.destination];
        for (const QString& date : leg.dates) {
            if (shouldAbort && shouldAbort())
                co_return fetched;
            if (m_state.isLoginWindowOpen()) {
                TDLog::note(u"runde avbrutt: innloggingsvinduet ble aapnet"_s);
                co_return fetched;
            }
            progress(leg.origin + u'→' + leg.destination, date);
            auto body = co_await lookUp(leg.origin, leg.destination, date, award, captureTimeout);
            if (!self)
                co_return fetched;
            if (!body && hasLostContact()) {
                dates.insert(date, std::nullopt);
                co_return fetched;
            }
            if (!body && ++strikes >= strikesThatDecide && successes == 0) {
                if (m_state.isLoginWindowOpen()) {
                    m_state.setLoggedOut(false);
                    dates.insert(date, std::nullopt);
                    co_return fetched;
                }
                progress(u"logger inn på nytt"_s, {});
                const bool renewed = co_await renew();
                if (!self)
                    co_return fetched;
                if (renewed) {
                    body =
                        co_await lookUp(leg.origin, leg.destination, date, award, captureTimeout);
                    if (!self)
                        co_return fetched;
                }
                if (!body) {
                    dates.insert(date, std::nullopt);
                    if (!hasLostContact())
                        co_await reportLoggedOut();
                    co_return fetched;
                }
            }
            if (body) {
                ++successes;
                confirmNow();
            }
            dates.insert(date, body);
        }
    }
    if (successes > 0 && m_keeper)
        co_await m_keeper->snapshotCookies();
    co_return fetched;
}
