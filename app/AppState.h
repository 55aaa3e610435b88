// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"
#include "core/Search.h"
#include "core/Settings.h"
#include "platform/Clock.h"
#include "polling/PollSummary.h"

#include <QCoroTask>
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>

#include <optional>

class Database;
class OthersFinds;
class Worker;

enum class Direction { out, home };

/// What all screens share: a cache over the database, and the three settings that they bind to.
/// Every change goes to the database, which tells of it; what has changed is read again in
/// one of the next turns of the event loop. Main thread only.
class AppState : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool onboarded READ onboarded NOTIFY onboardedChanged)
    Q_PROPERTY(bool notifyOn READ notifyOn WRITE setNotifyOn NOTIFY notifyOnChanged)
    Q_PROPERTY(double pollIntervalMin READ pollIntervalMin WRITE setPollIntervalMin NOTIFY
                   pollIntervalMinChanged)
    Q_PROPERTY(int newToday READ newToday NOTIFY reloaded)
    Q_PROPERTY(QString storageProblem READ storageProblem NOTIFY storageChanged)
    Q_PROPERTY(QString storageNotice READ storageNotice NOTIFY storageChanged)
public:
    /// Loads the settings and everything else. All must outlive the state.
    AppState(Database& database, Worker& worker, OthersFinds& finds, Clock& clock);

    /// All watchers, in ascending id.
    const QList<Search>& searches() const { return m_searches; }
    /// Offers and sold-out records, the newest first, at most Match::mostShown, none with a past
    /// travel date.
    const QList<Hit>& matches() const { return m_matches; }
    /// The last round that was stored; absent before the first.
    const std::optional<PollSummary>& lastPoll() const { return m_lastPoll; }
    /// Offers that can still be booked, per watcher; community finds under -1.
    const QMap<qint64, int>& matchCounts() const { return m_matchCounts; }
    /// As of OthersFinds.
    const QList<Match>& communityHits() const;
    bool onboarded() const { return m_onboarded; }
    bool notifyOn() const { return m_notifyOn; }
    /// Minutes.
    double pollIntervalMin() const { return m_pollIntervalMin; }
    /// Why nothing can be stored, in Norwegian; empty when all is well.
    const QString& storageProblem() const { return m_storageProblem; }
    /// What has happened to the stored data, in Norwegian, until it is dismissed; mostly empty.
    const QString& storageNotice() const { return m_storageNotice; }
    Q_INVOKABLE void dismissStorageNotice();

    /// These two store the choice. What cannot be stored stays as it was, and is told as changed,
    /// so that whoever offers it goes back.
    void setNotifyOn(bool on);
    void setPollIntervalMin(double minutes);

    /// Offers found today, by the user's calendar, that are not sold out.
    int newToday() const;
    /// Which way of a round trip an offer is; absent for a one-way or deleted watcher's.
    std::optional<Direction> direction(const Match& match) const;

    /// Reads everything, which happens by itself when another day begins.
    void reload();
    /// Stores a new watcher and starts a round, without waiting for it. False, and no round, when
    /// it could not be stored.
    bool addSearchAndRun(const Search& search);
    void finishOnboarding();
    /// Fetches what others have found.
    QCoro::Task<> refreshCommunity();

Q_SIGNALS:
    /// Watchers or offers have been read from the database, or a day has begun.
    void reloaded();
    void searchesChanged();
    void matchesChanged();
    void matchCountsChanged();
    void lastPollChanged();
    void communityHitsChanged();
    void onboardedChanged();
    void notifyOnChanged();
    void pollIntervalMinChanged();
    void storageChanged();

private:
    /// What `direction` needs of a watcher.
    struct Origins {
        bool isRoundTrip = false;
        QStringList codes;
    };

    void readSettings();
    void readWatchers();
    void readOffers();
    void readLastPoll();
    void noteStorage();
    void followDay();
    void setSearches(QList<Search> searches);
    void setMatches(QList<Hit> matches);

    Database& m_database;
    Worker& m_worker;
    OthersFinds& m_finds;
    Clock& m_clock;
    QDate m_day;
    std::unique_ptr<Clock::Timer> m_dayTimer;

    QList<Search> m_searches;
    QHash<qint64, Origins> m_origins;
    QList<Hit> m_matches;
    std::optional<PollSummary> m_lastPoll;
    QMap<qint64, int> m_matchCounts;
    bool m_onboarded = false;
    bool m_notifyOn = true;
    double m_pollIntervalMin = Setting::pollIntervalMin.usual;
    QString m_storageProblem;
    QString m_storageNotice;
};
