// SPDX-License-Identifier: MIT
#pragma once

#include "airline/LegFetcher.h"
#include "airline/OfferParser.h"
#include "core/Database.h"
#include "polling/FareComparison.h"
#include "polling/Legs.h"
#include "polling/PollSummary.h"

#include <QCoroTask>
#include <QObject>

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
    Worker(Database& database, LegFetcher& fetcher, Notifier& notifier, Clock& clock, Site site);

    bool isRunning() const { return m_isRunning; }
    /// A round runs, or the session is being revived for one: `pollOnce` would do nothing.
    bool isBusy() const { return m_busy; }
    /// No round can get data before somebody signs in: `pollOnce` then mostly does nothing.
    bool isSignedOut() const { return m_fetcher.loginStatus().isLoggedOut(); }
    /// What the user is told then.
    static QString signedOutText();
    /// What the round is doing, in Norwegian; empty between rounds.
    const QString& statusText() const { return m_statusText; }
    Progress progress() const { return m_progress; }
    /// Dates fetched so far for the current watcher, of those in this round.
    int lookupDone() const { return m_lookupDone; }
    int lookupTotal() const { return m_lookupTotal; }
    /// All legs of the current watcher when one round does not take them all; otherwise 0.
    int rotationTotal() const { return m_rotationTotal; }

    /// Starts the loop afresh: a round at once, then one whenever the interval has passed. The
    /// setting `poll_interval_min` goes before `intervalMinutes`.
    void startTimer(double intervalMinutes);
    /// The minutes between rounds: the setting as stored, or `otherwise` where that is no number;
    /// from one minute to a week.
    static double intervalMinutes(const std::optional<QString>& stored, double otherwise);
    /// Ends the loop; a round in progress goes on.
    void stopTimer();

    /// One round, after an attempt to mend what is wrong with storage. While another one runs, and
    /// while signed out within 30 minutes of the last attempt to change that, it does nothing and
    /// returns an empty summary.
    QCoro::Task<PollSummary> pollOnce();

    /// The next round may try to revive a signed-out session at once.
    void forgetRevivalAttempt() { m_lastRevivalAttempt.reset(); }

    /// The summary of the last round that was stored; absent when there is none.
    static std::optional<PollSummary> loadSummary(Database& database);

Q_SIGNALS:
    /// One of the properties above has changed.
    void changed();
    /// A new offer has been stored and announced.
    void matchFound(const Match& match);
    /// A seen offer has lost `cabins`; `record` has been stored and announced, `key` is its fare's.
    void soldOut(const Match& record, const QString& key, const CabinSet& cabins);
    /// What the database holds has changed, or whether it can store.
    void stored();
    /// A round has ended and its summary is stored.
    void roundEnded(const PollSummary& summary, const QList<Match>& found);

private:
    /// What a lookup of one watcher gave.
    struct Lookup {
        QList<Fare> fares;
        /// What the fare keys of the legs begin with that gave an answer.
        QSet<QString> visited;
        /// Why the lookup failed; absent when it did not.
        std::optional<QString> error;
    };

    QCoro::Task<> loop(double intervalMinutes);
    QCoro::Task<PollSummary> round();
    QCoro::Task<bool> revive();
    QCoro::Task<> checkWatcher(Search watcher, PollSummary& summary, QList<Match>& found);
    QCoro::Task<Lookup> fetchSASFares(Search watcher);
    QCoro::Task<> readBodies(FetchedLegs fetched, bool award, Lookup& lookup, qsizetype& noData);
    QCoro::Task<> matchFares(Search watcher, Lookup lookup, PollSummary& summary,
                             QList<Match>& found);
    void storeAndAnnounce(const Search& watcher, QList<FareNews> news, PollSummary& summary,
                          QList<Match>& found);
    QList<Leg> takeTurn(const Search& watcher, const Legs::All& legs);
    void noteProgress(const QString& displayName, const QString& label, const QString& date);
    bool stillActive(qint64 id);
    void setStatus(const QString& text);

    Database& m_database;
    LegFetcher& m_fetcher;
    Notifier& m_notifier;
    Clock& m_clock;
    OfferParser m_parser;

    bool m_isRunning = false;
    QString m_statusText;
    Progress m_progress;
    int m_lookupDone = 0;
    int m_lookupTotal = 0;
    int m_rotationTotal = 0;
    /// Held from the first step of a round to its last, also while a session is revived.
    bool m_busy = false;
    std::optional<Ticks> m_lastRevivalAttempt;
    InterruptibleSleep m_pause;
    int m_loopNumber = 0;
};
