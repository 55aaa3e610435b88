// SPDX-License-Identifier: MIT
#pragma once

#include "airline/LegFetcher.h"
#include "core/Database.h"
#include "polling/Announcer.h"
#include "polling/FareComparison.h"
#include "polling/LookTally.h"
#include "polling/PollSummary.h"
#include "polling/Resume.h"
#include "polling/SharedAnswers.h"
#include "polling/Turn.h"

#include <QCoroTask>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

class Notifier;

/// The heartbeat: runs poll rounds, one at a time, and tells how they go. Main thread only.
class Worker : public QObject {
    Q_OBJECT
public:
    /// Watchers handled so far, of those in the round.
    struct Progress {
        int done = 0;
        int total = 0;
        bool operator==(const Progress&) const = default;
    };

    /// Everything must outlive the worker.
    Worker(Database& database, LegFetcher& fetcher, Notifier& notifier, Clock& clock);

    bool isRunning() const { return m_isRunning; }
    /// A round runs, or the session is being revived for one: `pollOnce` would do nothing.
    bool isBusy() const { return m_busy; }
    /// No round can get data before somebody signs in: `pollOnce` then mostly does nothing.
    bool isSignedOut() const { return m_fetcher.loginStatus().isLoggedOut(); }
    /// Until when the airline has asked to be left alone: no round looks at anything before.
    /// Absent when it has not.
    std::optional<Instant> refusedUntil() const { return m_fetcher.refusedUntil(); }
    /// What the user is told when `pollOnce` would look at nothing; absent when it would.
    std::optional<QString> whyNoRound() const;
    /// What the round is doing, in Norwegian; empty between rounds.
    const QString& statusText() const { return m_statusText; }
    Progress progress() const { return m_progress; }
    /// How many lookups each watcher of the round has, as far as that is known: what those that had
    /// their turn took, and what the others will.
    const QList<int>& planned() const { return m_planned; }
    /// Dates fetched so far for the current watcher, of those in this round.
    int lookupDone() const { return m_lookupDone; }
    int lookupTotal() const { return m_lookupTotal; }
    /// All legs of the current watcher when one round does not take them all; otherwise 0.
    int rotationTotal() const { return m_rotationTotal; }

    /// Starts the loop afresh: a round at once, then one whenever the interval has passed. The
    /// setting `poll_interval_min` goes before `intervalMinutes`.
    void startTimer(double intervalMinutes = Setting::pollIntervalMin.usual);
    /// Ends the loop; a round in progress goes on.
    void stopTimer();

    /// The interval with a chance of its own, `chance` from 0 to 1: up to a tenth shorter or
    /// longer, so that those who started together do not stay so.
    static std::chrono::milliseconds jittered(std::chrono::milliseconds interval, double chance);

    /// One round, after an attempt to mend what is wrong with storage. While another one runs,
    /// while the airline has asked to be left alone, and while signed out within 30 minutes of the
    /// last attempt to change that, it does nothing and returns an empty summary.
    QCoro::Task<PollSummary> pollOnce();
    /// The summary of the round that is under way, at its end; that of `pollOnce` when there is
    /// none.
    QCoro::Task<PollSummary> joinRound();

    /// The next round may try to revive a signed-out session at once.
    void forgetRevivalAttempt() { m_lastRevivalAttempt.reset(); }

    /// The summary of the last round that was stored; absent when there is none.
    static std::optional<PollSummary> loadSummary(const Safekeeping& kept);

Q_SIGNALS:
    /// One of the properties above has changed.
    void changed();
    /// A new offer has been stored and announced.
    void matchFound(const Match& match);
    /// A seen fare has lost cabins; the record of it has been stored and announced.
    void soldOut(const SoldOut& record);
    /// What one leg has brought is stored and announced.
    void stored();
    /// A round has ended and its summary is stored.
    void roundEnded(const PollSummary& summary);
    /// `pollOnce` has ended, whether there was a round or not.
    void idle(const PollSummary& summary);

private:
    /// What is known of the round in progress.
    struct Round {
        PollSummary summary;
        /// Watchers that have had their turn, or have it.
        QSet<qint64> begun;
        /// How many lookups each watcher would take when it was first seen waiting.
        QHash<qint64, int> planned;
        SharedAnswers answers;
        bool hasAnswers = false;
        bool isCut = false;
    };
    /// One watcher's part of it.
    struct Visit {
        Search watcher;
        Turn turn;
        FareComparison comparison;
        LookTally tally;
        bool isPrepared = false;
    };

    QCoro::Task<> loop(double intervalMinutes);
    std::chrono::milliseconds untilNextRound(double intervalMinutes) const;
    QCoro::Task<bool> revive();
    QCoro::Task<PollSummary> round();
    QList<Search> waiting(const Round& round);
    std::optional<Search> nextWatcher(const Round& round);
    QCoro::Task<> checkWatcher(Search watcher, Round& round);
    std::optional<Visit> visit(const Search& watcher, Round& round);
    QCoro::Task<> lookAtLegs(Visit& visit, Round& round);
    QCoro::Task<std::optional<Outcome>> lookAt(Leg leg, Visit& visit, Round& round);
    QCoro::Task<> take(QList<Fare> fares, Leg leg, Visit& visit, Round& round);
    bool followEdits(Visit& visit);
    void endVisit(const Visit& visit, Round& round);
    void cut(const Visit& visit, const std::optional<Outcome>& outcome, Round& round);
    void setResume(const std::optional<Resume>& resume);
    void forgetOldCut();
    qint64 storedCursor(qint64 watcher);
    void storeCursor(qint64 watcher, const Turn& turn);
    LegFetcher::Progress progressOf(const Search& watcher);
    void showPlan(const QList<Search>& ahead, Round& round);
    void showLeg(const Visit& visit, const Leg& leg);
    void showSize(const Turn& turn);
    QList<Search> activeWatchers();
    std::optional<Search> activeWatcher(qint64 id);
    void setStatus(const QString& text);

    Database& m_database;
    LegFetcher& m_fetcher;
    Clock& m_clock;
    Announcer m_announcer;

    bool m_isRunning = false;
    QString m_statusText;
    Progress m_progress;
    QList<int> m_planned;
    int m_lookupDone = 0;
    int m_lookupTotal = 0;
    int m_rotationTotal = 0;
    /// Held from the first step of a round to its last, also while a session is revived.
    bool m_busy = false;
    std::optional<Ticks> m_lastRevivalAttempt;
    std::optional<Resume> m_resume;
    InterruptibleSleep m_pause;
    int m_loopNumber = 0;
};
