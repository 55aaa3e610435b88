// SPDX-License-Identifier: MIT
#include "core/SeenStore.h"

#include "core/DateFmt.h"
#include "core/Match.h"
#include "core/SqliteConnection.h"

QMap<QString, SeenStore::Seen> SeenStore::seenCabins(qint64 searchId) {
    QMap<QString, Seen> seen;
    m_db.query(
        "SELECT fare_key,cabins,label FROM seen WHERE search_id = ?",
        [&seen](const SqliteRow& row) {
            seen.insert(row.text(0), {decodeCabins(row.text(1)), row.text(2)});
        },
        searchId);
    return seen;
}

void SeenStore::upsertSeen(qint64 searchId, const QString& key, const CabinSet& cabins,
                           const QString& label) {
    m_db.change("INSERT INTO seen (search_id,fare_key,cabins,label) VALUES (?,?,?,?) "
                "ON CONFLICT(search_id,fare_key) DO UPDATE SET cabins=excluded.cabins, "
                "label=excluded.label",
                searchId, key, encodeCabins(cabins), label);
}

void SeenStore::forgetTravelledCommunityFinds() {
    // Fare keys begin with the date.
    m_db.change("DELETE FROM seen WHERE search_id = ? AND fare_key < ? "
                "AND fare_key GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]-*'",
                Match::communitySearchId, DateFmt::iso(m_clock.today()));
}
