// SPDX-License-Identifier: MIT
#pragma once

#include "core/Search.h"
#include "core/Transaction.h"

#include <QList>
#include <QObject>

class Safekeeping;
class SqliteConnection;

/// The watchers.
class WatcherStore : public QObject {
    Q_OBJECT
public:
    /// All must outlive the store.
    WatcherStore(SqliteConnection& db, Safekeeping& kept, Transaction transaction,
                 const Clock& clock)
        : m_db(db), m_kept(kept), m_transaction(std::move(transaction)), m_clock(clock) {}

    /// All watchers, in ascending id.
    QList<Search> listSearches();
    /// Stores a new, enabled watcher, whose id and state are ignored, and returns its id; 0 when it
    /// could not be stored.
    qint64 addSearch(const Search& search);
    /// Stores the user's edits and starts the watcher's date rotation afresh. This and the next
    /// ones say whether it worked, as it does, too, where there is no such watcher.
    bool updateSearch(const Search& search);
    bool renameSearch(qint64 id, const QString& name);
    bool toggleSearch(qint64 id);
    /// Deletes the watcher with its offers and what it has seen.
    bool deleteSearch(qint64 id);
    /// Deletes it likewise, but keeps all of it aside for `restoreSearch` until the next watcher is
    /// taken or the program ends. False, and nothing changes, when it could not be done.
    bool takeSearch(qint64 id);
    /// Puts back what `takeSearch` took last, under the same ids, once. False when there is nothing
    /// to put back or it could not be done.
    bool restoreSearch();
    /// Notes that a check of the watcher ended now and found `found` offers.
    bool markChecked(qint64 id, int found);

Q_SIGNALS:
    /// Once for all changes of a turn of the event loop, in a later one.
    void changed();

private:
    SqliteConnection& m_db;
    Safekeeping& m_kept;
    Transaction m_transaction;
    const Clock& m_clock;
};
