// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QObject>

class Clock;
class LegFetcher;
class SessionState;
class SignInWindow;
class StandBack;
class WatcherStore;
class Worker;

/// What happens when the user has finished with the sign-in window: the session is confirmed or
/// refuted at once, by a round where there is anything to watch, else by a lookup.
class SignIn : public QObject {
    Q_OBJECT
public:
    /// All must outlive this object.
    SignIn(SignInWindow& window, SessionState& session, StandBack& standBack,
           WatcherStore& watchers, LegFetcher& fetcher, Worker& worker, Clock& clock);

    /// Opens the window; the answer comes when the user has finished and is whether lookups work.
    QCoro::Task<bool> run();

    /// What `run`'s answer means to the user.
    static QString confirmedText() {
        return QStringLiteral("Innlogget hos SAS, bekreftet med et ekte oppslag.");
    }
    static QString failedText() { return QStringLiteral("Ikke innlogget hos SAS."); }

Q_SIGNALS:
    /// The session was confirmed, or could not be.
    void confirmed(bool works);

private:
    QCoro::Task<> confirm();

    SignInWindow& m_window;
    SessionState& m_session;
    StandBack& m_standBack;
    WatcherStore& m_watchers;
    LegFetcher& m_fetcher;
    Worker& m_worker;
    Clock& m_clock;
    bool m_isConfirming = false;
};
