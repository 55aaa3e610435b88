// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"
#include "core/FareKey.h"
#include "core/Transaction.h"

#include <QMap>
#include <QSet>
#include <QString>

class Clock;
class SqliteConnection;
struct Match;

/// What each watcher has seen, and of which finds of others the user was told, so that nothing is
/// told twice.
class SeenStore {
public:
    /// What a watcher last saw of one fare.
    struct Seen {
        CabinSet cabins;
        /// Display text of the fare.
        QString label;
        bool operator==(const Seen&) const = default;
    };

    /// All must outlive the store.
    SeenStore(SqliteConnection& db, Transaction transaction, const Clock& clock)
        : m_db(db), m_transaction(std::move(transaction)), m_clock(clock) {}

    /// What the watcher has seen, by fare key.
    QMap<FareKey, Seen> seenCabins(qint64 searchId);
    /// False, as below, when it could not be stored.
    bool upsertSeen(qint64 searchId, const FareKey& key, const Seen& seen);
    /// The finds of others that the user has been told of.
    QSet<OfferId> seenOfOthers();
    bool noteSeenOfOthers(const Match& find);
    /// Forgets that others' finds were seen whose travel date is past.
    void forgetTravelledCommunityFinds();

private:
    bool putSeen(qint64 searchId, const QString& key, const QString& cabins, const QString& label);

    SqliteConnection& m_db;
    Transaction m_transaction;
    const Clock& m_clock;
};
