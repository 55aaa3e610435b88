// SPDX-License-Identifier: MIT
#pragma once

#include "airline/LegFetcher.h"
#include "airline/Strikes.h"

#include <QCoroTask>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <optional>

class Clock;
class Keychain;
class Lookup;
class SessionKeeper;
class SessionState;
class Settings;
class StandBack;
class WebView;

/// What is done about the session while fares are looked up: when it is taken for dead, how it is
/// renewed, and when that is left to the user or nobody tries.
class SessionPolicy : public QObject {
    Q_OBJECT
public:
    using Progress = LegFetcher::Progress;

    /// All must outlive the object.
    SessionPolicy(WebView& view, Clock& clock, const Settings& settings, Keychain& keychain,
                  SessionState& state, StandBack& standBack, Lookup& lookup, SessionKeeper& keeper);

    /// Another watcher's looks follow: brings the cookies in order, and renews a session that was
    /// renewed six hours ago or longer.
    QCoro::Task<> prepare();
    /// Another watcher's strikes are counted from here on.
    void beginWatcher() { m_strikes.beginWatcher(); }

    /// What a look at `leg` that became `outcome` counts as: mostly just that. Where it means that
    /// the session is dead, this is renewed, and what counts is what another look gives, which
    /// takes at most `timeout`. Absent when the user has opened the sign-in window.
    QCoro::Task<std::optional<Outcome>> judge(Leg leg, Outcome outcome,
                                              std::chrono::milliseconds timeout, Progress progress);

    /// Confirms the session by a real look, and renews it where that fails. The answer is what
    /// became of the last look; absent when the user has opened the sign-in window, whose verdict
    /// it is then.
    QCoro::Task<std::optional<Outcome::Kind>> verify();

private:
    QCoro::Task<std::optional<Outcome>> probe();
    QCoro::Task<std::optional<Outcome::Kind>> verdict();
    QCoro::Task<std::optional<Outcome::Kind>> renewAndProbe(Outcome::Kind before);
    QCoro::Task<> refreshIfStale();
    QCoro::Task<bool> renew();
    QCoro::Task<bool> renewSilently();
    QCoro::Task<bool> signIn();
    void heedRefusal(const QUrl& url, int status, const QString& retryAfter);
    bool isCutOff();
    QCoro::Task<> reportLoggedOut();

    Clock& m_clock;
    const Settings& m_settings;
    Keychain& m_keychain;
    SessionState& m_state;
    StandBack& m_standBack;
    Lookup& m_lookup;
    SessionKeeper& m_keeper;
    Strikes m_strikes;
    bool m_isRenewing = false;
    /// A page could not be fetched since a renewal began.
    bool m_loadFailed = false;
};
