// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Capture.h"
#include "airline/LegFetcher.h"
#include "airline/Lookup.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "airline/Strikes.h"

class Keychain;
class SessionKeeper;
class Settings;

/// The one object that talks to the airline's site: it looks up fares in the hidden web view and
/// keeps watch over the session while it does. Main thread only.
class SASEngine : public QObject, public LegFetcher {
    Q_OBJECT
public:
    /// All must outlive the engine.
    SASEngine(WebView& view, Clock& clock, const Settings& settings, Keychain& keychain,
              SessionState& state, StandBack& standBack, Capture& capture, SessionKeeper& keeper);

    /// Asked by `verifyLogin`, which stands back while a poll round runs.
    void setRoundQuestion(std::function<bool()> roundIsRunning);

    SASLoginStatus loginStatus() const override { return m_state.loginStatus(); }
    std::optional<Instant> refusedUntil() const override { return m_standBack.until(); }
    QCoro::Task<std::optional<Outcome::Kind>> verifyLogin() override;
    bool isVerifying() const override { return m_probing; }
    QCoro::Task<> prepare(Progress progress) override;
    QCoro::Task<std::optional<Outcome>> fetchLeg(Leg leg, Progress progress) override;
    /// Leaves the last page, whose scripts would run on at full speed, and saves the session.
    void rest() override;

    /// One real lookup of tomorrow's flights from Oslo to Copenhagen.
    QCoro::Task<std::optional<Outcome>> probeLogin();
    /// Renews the session unless it was renewed less than six hours ago.
    QCoro::Task<> refreshSessionIfStale();

private:
    QCoro::Task<std::optional<Outcome::Kind>> verify();
    QCoro::Task<std::optional<Outcome::Kind>> renewAndProbe(Outcome::Kind before);
    QCoro::Task<std::optional<Outcome>> afterStrikes(Leg leg, Outcome last, Progress progress);
    QCoro::Task<bool> renew();
    QCoro::Task<bool> renewSilently();
    QCoro::Task<bool> signIn();
    void heedRefusal(const QUrl& url, int status, const QString& retryAfter);
    QCoro::Task<> reportLoggedOut();
    void leavePage();

    WebView& m_view;
    Clock& m_clock;
    const Settings& m_settings;
    Keychain& m_keychain;
    SessionState& m_state;
    StandBack& m_standBack;
    SessionKeeper& m_keeper;
    Lookup m_lookup;
    std::function<bool()> m_roundIsRunning;
    Strikes m_strikes;
    bool m_hasAnswers = false;
    bool m_probing = false;
    bool m_isRenewing = false;
    /// A page could not be fetched since a renewal began.
    bool m_loadFailed = false;
};
