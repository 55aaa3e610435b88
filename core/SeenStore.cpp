// SPDX-License-Identifier: MIT
#include "core/SeenStore.h"

#include "core/Match.h"
#include "core/SqliteConnection.h"

QMap<FareKey, SeenStore::Seen> SeenStore::seenCabins(qint64 searchId) {
    QMap<FareKey, Seen> seen;
    m_db.query(
        "SELECT fare_key,cabins,label FROM seen WHERE search_id = ?",
        [&seen](const SqliteRow& row) {
            seen.insert(FareKey::fromText(row.text(0)), {decodeCabins(row.text(1)), row.text(2)});
        },
        searchId);
    return seen;
}

bool SeenStore::upsertSeen(qint64 searchId, const FareKey& key, const Seen& seen) {
    return putSeen(searchId, key.text(), encodeCabins(seen.cabins), seen.label);
}

QSet<OfferId> SeenStore::seenOfOthers() {
    QSet<OfferId> seen;
    m_db.query(
        "SELECT fare_key FROM seen WHERE search_id = ?",
        [&seen](const SqliteRow& row) {
            if (const auto offer = OfferId::fromText(row.text(0)))
                seen.insert(*offer);
        },
        Match::communitySearchId);
    return seen;
}

bool SeenStore::noteSeenOfOthers(const Match& find) {
    return putSeen(Match::communitySearchId, find.offer().text(), rawValue(find.cabin),
                   find.route().text());
}

bool SeenStore::putSeen(qint64 searchId, const QString& key, const QString& cabins,
                        const QString& label) {
    return m_db.query("INSERT INTO seen (search_id,fare_key,cabins,label) VALUES (?,?,?,?) "
                      "ON CONFLICT(search_id,fare_key) DO UPDATE SET cabins=excluded.cabins, "
                      "label=excluded.label",
                      {}, searchId, key, cabins, label);
}

void SeenStore::forgetTravelledCommunityFinds() {
    const QDate today = m_clock.today();
    m_transaction([&] {
        for (const OfferId& seen : seenOfOthers()) {
            if (seen.key.date.isValid() && seen.key.date < today)
                m_db.change("DELETE FROM seen WHERE search_id = ? AND fare_key = ?",
                            Match::communitySearchId, seen.text());
        }
    });
}
