// SPDX-License-Identifier: MIT
#pragma once

#include "airline/LegFetcher.h"
#include "airline/Lookup.h"
#include "airline/SessionPolicy.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"

#include <functional>

class Settings;

/// The one object that talks to the airline's site: it looks up fares in the hidden web view, leg
/// by leg, and lets its policy see to the session. Main thread only.
class SASEngine : public QObject, public LegFetcher {
    Q_OBJECT
public:
    /// All must outlive the engine. `isRoundRunning` is asked by `verifyLogin`, which stands back
    /// while a poll round runs.
    SASEngine(WebView& view, Clock& clock, const Settings& settings, Keychain& keychain,
              SessionState& state, StandBack& standBack, Capture& capture, SessionKeeper& keeper,
              std::function<bool()> isRoundRunning);

    SASLoginStatus loginStatus() const override { return m_state.loginStatus(); }
    std::optional<Instant> refusedUntil() const override { return m_standBack.until(); }
    QCoro::Task<std::optional<Outcome::Kind>> verifyLogin() override;
    bool isVerifying() const override { return m_isVerifying; }
    QCoro::Task<> prepare(Progress progress) override;
    QCoro::Task<std::optional<Outcome>> fetchLeg(Leg leg, Progress progress) override;
    /// Leaves the last page, whose scripts would run on at full speed, and saves the session.
    void rest() override;

private:
    void leavePage();

    WebView& m_view;
    Clock& m_clock;
    SessionState& m_state;
    StandBack& m_standBack;
    SessionKeeper& m_keeper;
    std::function<bool()> m_isRoundRunning;
    Lookup m_lookup;
    SessionPolicy m_policy;
    bool m_hasAnswers = false;
    bool m_isVerifying = false;
};
