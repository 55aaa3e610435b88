// SPDX-License-Identifier: MIT
#include "airline/SASEngine.h"

#include "airline/SessionKeeper.h"
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
constexpr auto waitStep = 1s;

} // namespace

SASEngine::SASEngine(WebView& view, Clock& clock, const Settings& settings, Keychain& keychain,
                     SessionState& state, StandBack& standBack, Capture& capture,
                     SessionKeeper& keeper, std::function<bool()> isRoundRunning)
    : m_view(view)
    , m_clock(clock)
    , m_state(state)
    , m_standBack(standBack)
    , m_keeper(keeper)
    , m_isRoundRunning(std::move(isRoundRunning))
    , m_lookup(capture, clock, state, standBack)
    , m_policy(view, clock, settings, keychain, state, standBack, m_lookup, keeper) {
    TDLog::note(view.disableTrackingPrevention()
                    ? u"ITP slaatt av for soeke-webviewen"_s
                    : u"ITP: fant ikke av-bryteren i WebKit — sporingsvern forblir paa"_s);
    view.setUserAgent(userAgent);
}

/// Not from under the user, or a verification.
void SASEngine::leavePage() {
    if (!m_state.isLoginWindowOpen() && !m_isVerifying)
        m_view.unload();
}

void SASEngine::rest() {
    if (std::exchange(m_hasAnswers, false))
        m_keeper.snapshotSoon();
    leavePage();
}

QCoro::Task<> SASEngine::prepare(Progress progress) {
    const QPointer self(this);
    m_policy.beginWatcher();
    // A verification that began before has the web view, and would take the end of its lookup for a
    // dead session.
    while (m_state.isLoginWindowOpen() || m_isVerifying) {
        if (m_state.isLoginWindowOpen())
            progress(Aside::waitsForSignIn);
        co_await m_clock.sleep(waitStep);
        if (!self)
            co_return;
    }
    if (m_standBack.isOn())
        co_return;
    co_await m_policy.prepare();
}

QCoro::Task<std::optional<Outcome>> SASEngine::fetchLeg(Leg leg, Progress progress) {
    if (m_standBack.isOn())
        co_return Outcome{Kind::refused};
    const QPointer self(this);
    std::optional<Outcome> outcome;
    if (!m_state.isLoginWindowOpen())
        outcome = co_await m_lookup.look(leg, captureTimeout);
    if (self && outcome)
        outcome = co_await m_policy.judge(leg, std::move(*outcome), captureTimeout, progress);
    if (!self)
        co_return std::nullopt;
    if (!outcome)
        TDLog::note(u"runde avbrutt: innloggingsvinduet ble aapnet"_s);
    m_hasAnswers = m_hasAnswers || (outcome && outcome->kind == Kind::answer);
    co_return outcome;
}

QCoro::Task<std::optional<Kind>> SASEngine::verifyLogin() {
    if (m_state.isLoginWindowOpen() || m_isVerifying || m_isRoundRunning())
        co_return std::nullopt;
    const SASLoginStatus before = m_state.loginStatus();
    const bool wasChecking = before.state == SASLoginStatus::Case::checking;
    if (m_standBack.isOn()) {
        if (wasChecking)
            m_state.setLoginStatus(SASLoginStatus::unknown());
        co_return Kind::refused;
    }
    const QPointer self(this);
    m_isVerifying = true;
    m_state.setLoginStatus(SASLoginStatus::checking());
    const auto kind = co_await m_policy.verify();
    if (!self)
        co_return std::nullopt;
    if (m_state.loginStatus().state == SASLoginStatus::Case::checking)
        m_state.setLoginStatus(wasChecking ? SASLoginStatus::unknown() : before);
    m_isVerifying = false;
    leavePage();
    co_return kind;
}
