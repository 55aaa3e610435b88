// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"
#include "core/Transaction.h"

#include <QList>
#include <QMap>
#include <QObject>

class SqliteConnection;

/// The offers that were found, and the records that some have gone.
class OfferStore : public QObject {
    Q_OBJECT
public:
    /// Whether the user is still to be told of a stored offer.
    enum class Telling { isDone, isDue };

    /// All must outlive the store.
    OfferStore(SqliteConnection& db, Transaction transaction, const Clock& clock)
        : m_db(db), m_transaction(std::move(transaction)), m_clock(clock) {}

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
    /// False when it could not be deleted.
    bool deleteMatch(qint64 id);
    /// Forgets all offers, but not that they were seen, and keeps them aside for `restoreMatches`
    /// until they are next taken. False when there were none or they could not be forgotten.
    bool takeMatches();
    /// Puts back what `takeMatches` took last, under the same ids, once; the offers of watchers
    /// deleted meanwhile stay away. False when there is nothing or it could not be stored.
    bool restoreMatches();

Q_SIGNALS:
    /// Once for all changes of a turn of the event loop, in a later one.
    void changed();

private:
    qint64 recordHit(const Hit& hit, Telling telling);

    SqliteConnection& m_db;
    Transaction m_transaction;
    const Clock& m_clock;
};
