// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"

#include <QMap>
#include <QString>

class Clock;
class SqliteConnection;

/// What each watcher has seen, so that nothing is told twice. Others' finds are those of watcher
/// `Match::communitySearchId`.
class SeenStore {
public:
    /// What a watcher last saw of one fare.
    struct Seen {
        CabinSet cabins;
        /// Display text of the fare.
        QString label;
        bool operator==(const Seen&) const = default;
    };

    /// Both must outlive the store.
    SeenStore(SqliteConnection& db, const Clock& clock) : m_db(db), m_clock(clock) {}

    /// What the watcher has seen, by fare key.
    QMap<QString, Seen> seenCabins(qint64 searchId);
    void upsertSeen(qint64 searchId, const QString& key, const CabinSet& cabins,
                    const QString& label);
    /// Forgets that others' finds were seen whose travel date is past.
    void forgetTravelledCommunityFinds();

private:
    SqliteConnection& m_db;
    const Clock& m_clock;
};
