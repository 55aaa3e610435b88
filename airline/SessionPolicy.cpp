// SPDX-License-Identifier: MIT
#include "airline/SessionPolicy.h"

#include "airline/Lookup.h"
#include "airline/SessionKeeper.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"
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

constexpr auto probeTimeout = 45s;
constexpr auto sessionAge = 6h;
constexpr int renewalSteps = 12;

/// Whether this may be because the session is dead.
bool isAboutSession(Kind kind) {
    return kind == Kind::silent || kind == Kind::signedOut;
}

} // namespace

SessionPolicy::SessionPolicy(WebView& view, Clock& clock, const Settings& settings,
                             Keychain& keychain, SessionState& state, StandBack& standBack,
                             Lookup& lookup, SessionKeeper& keeper)
    : m_clock(clock)
    , m_settings(settings)
    , m_keychain(keychain)
    , m_state(state)
    , m_standBack(standBack)
    , m_lookup(lookup)
    , m_keeper(keeper) {
    connect(&view, &WebView::loadFailed, this, [this](WebView::LoadFailure failure) {
        m_loadFailed = m_loadFailed || failure == WebView::LoadFailure::unreachable;
    });
    connect(&view, &WebView::pageArrived, this, &SessionPolicy::heedRefusal);
}

/// One real look at tomorrow's flights from Oslo to Copenhagen.
QCoro::Task<std::optional<Outcome>> SessionPolicy::probe() {
    return m_lookup.look({u"OSL"_s, u"CPH"_s, m_clock.today().addDays(1), Flow::points},
                         probeTimeout);
}

QCoro::Task<> SessionPolicy::prepare() {
    const QPointer self(this);
    m_keeper.hideWindow();
    co_await m_keeper.restoreCookiesIfNeeded();
    if (!self)
        co_return;
    co_await m_keeper.pruneCookiesIfStale();
    if (!self)
        co_return;
    co_await refreshIfStale();
}

QCoro::Task<> SessionPolicy::refreshIfStale() {
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
    const auto outcome = co_await probe();
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

// --- When it is taken for dead

QCoro::Task<std::optional<Outcome>> SessionPolicy::judge(Leg leg, Outcome outcome,
                                                         std::chrono::milliseconds timeout,
                                                         Progress progress) {
    const QPointer self(this);
    if (!m_strikes.decide(outcome.kind))
        co_return outcome;
    outcome.kind = Kind::signedOut;
    if (m_state.isLoginWindowOpen()) {
        m_state.setLoggedOut(false);
        co_return outcome;
    }
    progress(LegFetcher::Aside::renewsSession);
    const bool renewed = co_await renew();
    if (!self)
        co_return std::nullopt;
    if (renewed) {
        const auto again = co_await m_lookup.look(leg, timeout);
        if (!self || !again)
            co_return std::nullopt;
        if (!isAboutSession(again->kind))
            co_return *again;
    } else if (m_standBack.isOn()) {
        co_return Outcome{Kind::refused};
    } else if (isCutOff()) {
        co_return Outcome{Kind::unreachable};
    }
    co_await reportLoggedOut();
    co_return outcome;
}

QCoro::Task<std::optional<Kind>> SessionPolicy::verify() {
    const QPointer self(this);
    const auto kind = co_await verdict();
    if (!self)
        co_return std::nullopt;
    if (kind == Kind::answer)
        m_keeper.snapshotSoon();
    else if (kind && isAboutSession(*kind))
        co_await reportLoggedOut();
    co_return kind;
}

QCoro::Task<std::optional<Kind>> SessionPolicy::verdict() {
    const QPointer self(this);
    m_keeper.hideWindow();
    co_await m_keeper.restoreCookiesIfNeeded();
    if (!self || m_state.isLoginWindowOpen())
        co_return std::nullopt;
    const auto outcome = co_await probe();
    if (!self || !outcome || m_state.isLoginWindowOpen())
        co_return std::nullopt;
    if (!isAboutSession(outcome->kind))
        co_return outcome->kind;
    const auto kind = co_await renewAndProbe(outcome->kind);
    co_return kind;
}

QCoro::Task<> SessionPolicy::reportLoggedOut() {
    const QPointer self(this);
    bool autoLoginFailed = false;
    if (m_settings.isOn(Setting::autoLogin))
        autoLoginFailed = (co_await m_keychain.load()).has_value();
    if (self)
        m_state.setLoggedOut(autoLoginFailed);
}

// --- How it is renewed

/// First silently, then with the stored details; each has to prove itself by a lookup. What became
/// of the last one, `before` where none was made.
QCoro::Task<std::optional<Kind>> SessionPolicy::renewAndProbe(Kind before) {
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
        const auto outcome = co_await probe();
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
    if (isCutOff())
        kind = Kind::unreachable;
    co_return kind;
}

/// Silently if possible, else with the stored sign-in details.
QCoro::Task<bool> SessionPolicy::renew() {
    const QPointer self(this);
    m_loadFailed = false;
    bool renewed = co_await renewSilently();
    if (self && !renewed)
        renewed = co_await signIn();
    if (self && renewed)
        m_state.lastSessionRefresh = m_clock.ticks();
    co_return renewed;
}

QCoro::Task<bool> SessionPolicy::renewSilently() {
    const QPointer self(this);
    m_isRenewing = true;
    const bool renewed = co_await m_keeper.silentSSORefresh(renewalSteps);
    if (self)
        m_isRenewing = false;
    co_return renewed;
}

QCoro::Task<bool> SessionPolicy::signIn() {
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

/// Lookups see to their own. A sign-in's 403 may be a challenge that lets people through.
void SessionPolicy::heedRefusal(const QUrl&, int status, const QString& retryAfter) {
    const auto outcome = Verdict::ofPage(status, retryAfter);
    if (m_isRenewing && status != 403 && outcome && outcome->kind == Kind::refused)
        m_standBack.refuse(outcome->retryAfter, status);
}

/// A renewal has failed because its pages could not be fetched, which says nothing else.
bool SessionPolicy::isCutOff() {
    if (!m_loadFailed || m_state.isLoginWindowOpen())
        return false;
    m_state.setSiteUnreachable(true);
    return true;
}
