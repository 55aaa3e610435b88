// SPDX-License-Identifier: MIT
#include "airline/SASEngine.h"

#include "airline/SessionKeeper.h"
#include "airline/Verdict.h"
#include "core/Keychain.h"
#include "core/Settings.h"
#include "core/TDLog.h"
#include "platform/WebView.h"

#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Kind = Outcome::Kind;

/// The sign-in challenge and the site itself are friendlier to a well-known browser of the family.
const QString userAgent = u"Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 "
                          u"(KHTML, like Gecko) Version/17.4 Safari/605.1.15"_s;
constexpr auto captureTimeout = 60s;
constexpr auto probeTimeout = 45s;
constexpr auto waitStep = 1s;
constexpr auto sessionAge = 6h;
constexpr int renewalSteps = 12;

/// Whether this may be because the session is dead.
bool isAboutSession(Kind kind) {
    return kind == Kind::silent || kind == Kind::signedOut;
}

} // namespace

SASEngine::SASEngine(WebView& view, Clock& clock, const Settings& settings, Keychain& keychain,
                     SessionState& state, StandBack& standBack, Capture& capture,
                     SessionKeeper& keeper)
    : m_view(view)
    , m_clock(clock)
    , m_settings(settings)
    , m_keychain(keychain)
    , m_state(state)
    , m_standBack(standBack)
    , m_keeper(keeper)
    , m_lookup(capture, clock, state, standBack) {
    TDLog::note(view.disableTrackingPrevention()
                    ? u"ITP slaatt av for soeke-webviewen"_s
                    : u"ITP: fant ikke av-bryteren i WebKit — sporingsvern forblir paa"_s);
    view.setUserAgent(userAgent);
    connect(&view, &WebView::loadFailed, this, [this](WebView::LoadFailure failure) {
        m_loadFailed = m_loadFailed || failure == WebView::LoadFailure::unreachable;
    });
    connect(&view, &WebView::pageArrived, this, &SASEngine::heedRefusal);
}

void SASEngine::setRoundQuestion(std::function<bool()> roundIsRunning) {
    m_roundIsRunning = std::move(roundIsRunning);
}

/// Not from under the user, or a verification.
void SASEngine::leavePage() {
    if (!m_state.isLoginWindowOpen() && !m_probing)
        m_view.unload();
}

void SASEngine::rest() {
    if (std::exchange(m_hasAnswers, false))
        m_keeper.snapshotSoon();
    leavePage();
}

QCoro::Task<std::optional<Outcome>> SASEngine::probeLogin() {
    return m_lookup.look({u"OSL"_s, u"CPH"_s, m_clock.today().addDays(1), Flow::points},
                         probeTimeout);
}

// --- The session

QCoro::Task<std::optional<Kind>> SASEngine::verifyLogin() {
    if (m_state.isLoginWindowOpen() || m_probing || (m_roundIsRunning && m_roundIsRunning()))
        co_return std::nullopt;
    const SASLoginStatus before = m_state.loginStatus();
    if (m_standBack.isOn()) {
        if (before.state == SASLoginStatus::Case::checking)
            m_state.setLoginStatus(SASLoginStatus::unknown());
        co_return Kind::refused;
    }
    const QPointer self(this);
    m_probing = true;
    m_state.setLoginStatus(SASLoginStatus::checking());
    const auto kind = co_await verify();
    if (!self)
        co_return std::nullopt;
    if (kind == Kind::answer)
        m_keeper.snapshotSoon();
    else if (kind && isAboutSession(*kind))
        co_await reportLoggedOut();
    if (self && m_state.loginStatus().state == SASLoginStatus::Case::checking)
        m_state.setLoginStatus(
            before.state == SASLoginStatus::Case::checking ? SASLoginStatus::unknown() : before);
    if (!self)
        co_return std::nullopt;
    m_probing = false;
    leavePage();
    co_return kind;
}

/// Absent when the user has opened the window: the verdict is theirs to make then.
QCoro::Task<std::optional<Kind>> SASEngine::verify() {
    const QPointer self(this);
    m_keeper.hideWindow();
    co_await m_keeper.restoreCookiesIfNeeded();
    if (!self || m_state.isLoginWindowOpen())
        co_return std::nullopt;
    const auto outcome = co_await probeLogin();
    if (!self || !outcome || m_state.isLoginWindowOpen())
        co_return std::nullopt;
    if (!isAboutSession(outcome->kind))
        co_return outcome->kind;
    const auto kind = co_await renewAndProbe(outcome->kind);
    co_return kind;
}

/// Lookups see to their own. A sign-in's 403 may be a challenge that lets people through.
void SASEngine::heedRefusal(const QUrl&, int status, const QString& retryAfter) {
    const auto outcome = Verdict::ofPage(status, retryAfter);
    if (m_isRenewing && status != 403 && outcome && outcome->kind == Kind::refused)
        m_standBack.refuse(outcome->retryAfter, status);
}

QCoro::Task<bool> SASEngine::renewSilently() {
    const QPointer self(this);
    m_isRenewing = true;
    const bool renewed = co_await m_keeper.silentSSORefresh(renewalSteps);
    if (self)
        m_isRenewing = false;
    co_return renewed;
}

QCoro::Task<bool> SASEngine::signIn() {
    const QPointer self(this);
    // Nothing is filled in where somebody asks to be left alone.
    if (m_standBack.isOn())
        co_return false;
    m_isRenewing = true;
    const bool signedIn = co_await m_keeper.attemptAutoLogin();
    if (self)
        m_isRenewing = false;
    co_return signedIn;
}

/// First silently, then with the stored details; each has to prove itself by a lookup. What became
/// of the last one, `before` where none was made.
QCoro::Task<std::optional<Kind>> SASEngine::renewAndProbe(Kind before) {
    const QPointer self(this);
    m_loadFailed = false;
    Kind kind = before;
    for (const bool silently : {true, false}) {
        bool isRenewed = false;
        if (silently)
            isRenewed = co_await renewSilently();
        else
            isRenewed = co_await signIn();
        if (!self)
            co_return std::nullopt;
        if (m_state.isLoginWindowOpen() && silently)
            co_return std::nullopt;
        if (!isRenewed)
            continue;
        const auto outcome = co_await probeLogin();
        if (!self || !outcome)
            co_return std::nullopt;
        kind = outcome->kind;
        if (kind == Kind::answer && silently)
            m_state.lastSessionRefresh = m_clock.ticks();
        if (!isAboutSession(kind))
            co_return kind;
    }
    // Refused, or without a network, there was nothing to learn.
    if (m_standBack.isOn())
        co_return Kind::refused;
    if (m_loadFailed && !m_state.isLoginWindowOpen()) {
        m_state.setSiteUnreachable(true);
        kind = Kind::unreachable;
    }
    co_return kind;
}

QCoro::Task<> SASEngine::reportLoggedOut() {
    const QPointer self(this);
    bool autoLoginFailed = false;
    if (m_settings.isOn(Setting::autoLogin))
        autoLoginFailed = (co_await m_keychain.load()).has_value();
    if (self)
        m_state.setLoggedOut(autoLoginFailed);
}

QCoro::Task<> SASEngine::refreshSessionIfStale() {
    if (m_state.isLoginWindowOpen())
        co_return;
    const QPointer self(this);
    co_await m_keeper.restoreCookiesIfNeeded();
    if (!self ||
        (m_state.lastSessionRefresh && m_clock.ticks() - *m_state.lastSessionRefresh < sessionAge))
        co_return;
    const bool renewed = co_await renewSilently();
    if (!self || !renewed || m_state.isLoginWindowOpen())
        co_return;
    const auto outcome = co_await probeLogin();
    if (!self || !outcome || m_state.isLoginWindowOpen())
        co_return;
    if (isAboutSession(outcome->kind))
        TDLog::note(u"SSO-fornyelse: SSO OK men offers ga INGEN data — poeng-sesjonen er doed, "
                    u"trenger ekte innlogging"_s);
    else if (outcome->kind != Kind::answer)
        TDLog::note(u"SSO-fornyelse: SSO OK, men nettstedet svarte ikke paa oppslaget"_s);
    if (outcome->kind != Kind::answer)
        co_return;
    m_state.lastSessionRefresh = m_clock.ticks();
    TDLog::note(u"SSO-fornyelse: bekreftet med ekte oppslag"_s);
    m_keeper.snapshotSoon();
}

/// Silently if possible, else with the stored sign-in details.
QCoro::Task<bool> SASEngine::renew() {
    const QPointer self(this);
    m_loadFailed = false;
    bool renewed = co_await renewSilently();
    if (self && !renewed)
        renewed = co_await signIn();
    if (self && renewed)
        m_state.lastSessionRefresh = m_clock.ticks();
    co_return renewed;
}

// --- Looking up

QCoro::Task<> SASEngine::prepare(Progress progress) {
    const QPointer self(this);
    m_strikes.beginWatcher();
    // A verification that began before has the web view, and would take the end of its lookup for a
    // dead session.
    while (m_state.isLoginWindowOpen() || m_probing) {
        if (m_state.isLoginWindowOpen())
            progress(waitingLabel());
        co_await m_clock.sleep(waitStep);
        if (!self)
            co_return;
    }
    if (m_standBack.isOn())
        co_return;
    m_keeper.hideWindow();
    co_await m_keeper.restoreCookiesIfNeeded();
    if (!self)
        co_return;
    co_await m_keeper.pruneCookiesIfStale();
    if (!self)
        co_return;
    co_await refreshSessionIfStale();
}

QCoro::Task<std::optional<Outcome>> SASEngine::fetchLeg(Leg leg, Progress progress) {
    if (m_standBack.isOn())
        co_return Outcome{Kind::refused};
    const QPointer self(this);
    std::optional<Outcome> outcome;
    if (!m_state.isLoginWindowOpen())
        outcome = co_await m_lookup.look(leg, captureTimeout);
    if (self && outcome && m_strikes.decide(outcome->kind))
        outcome = co_await afterStrikes(leg, *outcome, progress);
    if (!self)
        co_return std::nullopt;
    if (!outcome)
        TDLog::note(u"runde avbrutt: innloggingsvinduet ble aapnet"_s);
    m_hasAnswers = m_hasAnswers || (outcome && outcome->kind == Kind::answer);
    co_return outcome;
}

/// Renews the session and looks once more. What that gives decides whether the session is dead.
QCoro::Task<std::optional<Outcome>> SASEngine::afterStrikes(Leg leg, Outcome last,
                                                            Progress progress) {
    const QPointer self(this);
    last.kind = Kind::signedOut;
    if (m_state.isLoginWindowOpen()) {
        m_state.setLoggedOut(false);
        co_return last;
    }
    progress(u"logger inn på nytt"_s);
    const bool renewed = co_await renew();
    if (!self)
        co_return std::nullopt;
    if (renewed) {
        const auto outcome = co_await m_lookup.look(leg, captureTimeout);
        if (!self || !outcome)
            co_return std::nullopt;
        if (!isAboutSession(outcome->kind))
            co_return *outcome;
    } else if (m_standBack.isOn()) {
        co_return Outcome{Kind::refused};
    } else if (m_loadFailed && !m_state.isLoginWindowOpen()) {
        m_state.setSiteUnreachable(true);
        co_return Outcome{Kind::unreachable};
    }
    co_await reportLoggedOut();
    co_return last;
}
