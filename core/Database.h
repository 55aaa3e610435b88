// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"
#include "core/Search.h"
#include "core/SqliteConnection.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>

#include <functional>
#include <future>
#include <optional>

/// Everything that Tindra remembers apart from secrets: watchers, offers, what each watcher has
/// seen, and settings. One SQLite file, main thread only.
///
/// No operation fails loudly: without a usable file, reads are empty and changes do nothing, and
/// `problem` says why.
class Database {
public:
    /// What a watcher last saw of one fare.
    struct Seen {
        CabinSet cabins;
        /// Display text of the fare.
        QString label;
        bool operator==(const Seen&) const = default;
    };

    /// Whether the user is still to be told of a stored offer.
    enum class Telling { isDone, isDue };

    enum class Access {
        /// This process has the folder to itself, apart from `guest`s.
        owner,
        /// Another process has the folder: nothing is created, repaired or upgraded here.
        guest,
    };

    /// Opens `folder`/tindra.sqlite, creating what is missing, upgrading what is old (after a copy)
    /// and putting the last good copy, or a fresh file, in the place of one that is damaged, or
    /// missing beside its copies. The file of a later version is left alone. `clock` must outlive
    /// the database.
    Database(const QString& folder, const Clock& clock, Access access = Access::owner);
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    /// Why nothing can be stored, or not safely, in Norwegian; absent when all is well, and again
    /// when storing has worked after a failure. That a file is damaged stays until `recover`.
    const std::optional<QString>& problem() const { return m_problem; }
    /// Reads what became of the day's copy. Where there is a problem, it tries again: a problem
    /// goes away when storing works, and a damaged file is replaced as when it is opened. True when
    /// the problem or the data may be others than before.
    bool recover();

    /// What has happened to the user's data, in Norwegian, until they have seen it: the damaged
    /// file was replaced. Absent when nothing has.
    std::optional<QString> notice();
    void dismissNotice();

    /// Makes today's copy where there is none, and keeps three of them. It is made on another
    /// thread, from what is stored now; the database's end waits for it, and `recover` reads what
    /// became of it.
    void keepDailyCopy();
    /// Writes everything to a file of its own, which may replace an earlier such file but nothing
    /// else. Returns why that failed, in Norwegian; absent when the file is there.
    std::optional<QString> copyTo(const QString& file);

    /// Runs `work`; all its changes are stored together, or none of them when one fails. They are
    /// on the disk when this returns true. Not to be nested.
    bool transaction(const std::function<void()>& work);

    /// A setting; absent when it was never set.
    std::optional<QString> get(const QString& key);
    void set(const QString& key, const QString& value);
    /// True when the setting is exactly "1", or is missing and `whenMissing` is true.
    bool isOn(const QString& key, bool whenMissing);

    /// All watchers, in ascending id.
    QList<Search> listSearches();
    /// Stores a new, enabled watcher; its id and state are ignored.
    void addSearch(const Search& search);
    /// Stores the user's edits and starts the watcher's date rotation afresh.
    void updateSearch(const Search& search);
    void renameSearch(qint64 id, const QString& name);
    void toggleSearch(qint64 id);
    /// Deletes the watcher with its offers and what it has seen.
    void deleteSearch(qint64 id);
    /// Deletes it likewise, but keeps all of it aside for `restoreSearch` until the next watcher is
    /// taken or the program ends. False, and nothing changes, when it could not be done.
    bool takeSearch(qint64 id);
    /// Puts back what `takeSearch` took last, under the same ids, once. False when there is nothing
    /// to put back or it could not be done.
    bool restoreSearch();
    /// Notes that a check of the watcher ended now and found `found` offers.
    void markChecked(qint64 id, int found);

    /// Stores an offer under a new id and returns that; 0 when it could not be stored.
    qint64 recordMatch(const Match& match, Telling telling = Telling::isDone);
    /// The same for the record that one has gone.
    qint64 recordSoldOut(const SoldOut& record, Telling telling = Telling::isDone);
    /// Offers and sold-out records of which the user is still to be told, in the order of storing.
    QList<Hit> untold();
    /// The user has been told of these, or need not be. False when that could not be stored.
    bool markTold(const QList<qint64>& matches);
    /// The newest first; those whose travel date is past are left out.
    QList<Hit> recentMatches(int limit);
    /// Offers that can still be booked and travelled, per watcher; community finds under -1.
    QMap<qint64, int> activeMatchCounts();
    void deleteMatch(qint64 id);
    /// Forgets that others' finds were seen whose travel date is past.
    void forgetTravelledCommunityFinds();
    /// Forgets all offers, but not that they were seen, and keeps them aside for `restoreMatches`
    /// until they are next taken. False when there were none or they could not be forgotten.
    bool takeMatches();
    /// Puts back what `takeMatches` took last, under the same ids, once; the offers of watchers
    /// deleted meanwhile stay away. False when there is nothing or it could not be stored.
    bool restoreMatches();

    /// What the watcher has seen, by fare key.
    QMap<FareKey, Seen> seenCabins(qint64 searchId);
    void upsertSeen(qint64 searchId, const FareKey& key, const Seen& seen);
    /// The finds of others that the user has been told of.
    QSet<OfferId> seenOfOthers();
    void noteSeenOfOthers(const Match& find);

private:
    struct CopyResult {
        /// Why there is no copy; absent when there is.
        std::optional<QString> reason;
        /// Because the database itself is broken.
        bool isDamaged = false;
    };

    void open();
    bool isUsable();
    bool replaceDamaged();
    bool copyBeforeUpgrade();
    /// Waits for the copy that is being made, if any, and says what became of it.
    void endDailyCopy();
    void upgrade();
    std::optional<QString> writeCopy(const QString& file);
    qint64 recordHit(const Hit& hit, Telling telling);
    void putSeen(qint64 searchId, const QString& key, const QString& cabins, const QString& label);
    void refuse(const QString& problem);
    void noteFailure(const QString& message);
    void noteDamage(const QString& message);
    void cleanupMismatchedMatches();
    void cleanupDuplicateMatches();

    QString m_folder;
    const Clock& m_clock;
    Access m_access;
    SqliteConnection m_db;
    std::optional<QString> m_problem;
    /// The file was opened, and took changes then.
    bool m_isOpen = false;
    /// What was read was broken. Storing may still work in other places of the file.
    bool m_isDamaged = false;
    /// The file's `user_version` when it was opened.
    int m_version = 0;
    /// The last day whose copy was made, or could not be.
    QDate m_lastCopy;
    std::future<CopyResult> m_copy;
    QString m_lastRefusal;
    /// A statement has failed since the transaction began.
    bool m_failed = false;
};
