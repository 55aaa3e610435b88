// SPDX-License-Identifier: MIT
#include "airline/Lookup.h"

#include "airline/Capture.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"

#include <QPointer>

using namespace std::chrono_literals;

namespace {

using Kind = Outcome::Kind;

/// A machine that wakes up needs some seconds for its network.
constexpr int triesToReachSite = 3;
constexpr auto pauseBetweenTries = 10s;
/// A page that has not come for this long has been waited for already.
constexpr auto longTry = 30s;

} // namespace

Lookup::Lookup(Capture& capture, Clock& clock, SessionState& state, StandBack& standBack)
    : m_capture(capture), m_clock(clock), m_state(state), m_standBack(standBack) {}

QCoro::Task<std::optional<Outcome>> Lookup::look(Leg leg, std::chrono::milliseconds timeout) {
    const QPointer self(this);
    for (int left = triesToReachSite - 1;; --left) {
        const Ticks began = m_clock.ticks();
        auto outcome = co_await m_capture.capture(leg, timeout);
        if (!self || !outcome)
            co_return std::nullopt;
        const bool isWorthATry =
            outcome->kind == Kind::unreachable && left > 0 && m_clock.ticks() - began < longTry;
        if (!isWorthATry) {
            note(*outcome);
            co_return outcome;
        }
        co_await m_clock.sleep(pauseBetweenTries);
        if (!self || m_state.isLoginWindowOpen())
            co_return std::nullopt;
    }
}

void Lookup::note(const Outcome& outcome) {
    m_state.setSiteUnreachable(outcome.kind == Kind::unreachable);
    if (outcome.kind == Kind::refused)
        m_standBack.refuse(outcome.retryAfter, outcome.status);
    if (outcome.kind != Kind::answer)
        return;
    m_standBack.answered();
    m_state.setLoginStatus(SASLoginStatus::loggedIn(m_clock.now()));
}
