// SPDX-License-Identifier: MIT
#include "core/OfferStore.h"

#include "core/DateFmt.h"
#include "core/SqliteConnection.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto matchColumns = "search_id,key,route,from_city,to_city,depart,arrive,stops_text,"
                              "flight,cabin,seats,points,travel_date,booking_url,soldout,found_at,"
                              "duration_min";

Match readMatch(const SqliteRow& row) {
    Match match;
    match.id = row.integer(0);
    match.searchId = row.integer(1);
    match.key = row.text(2);
    match.route = row.text(3);
    match.fromCity = row.text(4);
    match.toCity = row.text(5);
    match.depart = row.text(6);
    match.arrive = row.text(7);
    match.stopsText = row.text(8);
    match.flight = row.text(9);
    match.cabin = row.text(10);
    match.seats = static_cast<int>(row.integer(11));
    match.points = static_cast<int>(row.integer(12));
    match.travelDate = row.text(13);
    match.bookingURL = row.text(14);
    match.soldOut = row.integer(15) == 1;
    match.foundAt = instantFromSeconds(row.real(16));
    match.durationMinutes = static_cast<int>(row.integer(17));
    match.isCommunity = match.searchId == Match::communitySearchId;
    return match;
}

} // namespace

qint64 OfferStore::recordMatch(const Match& m, Telling telling) {
    static const QByteArray sql = QByteArray("INSERT INTO matches (") + matchColumns +
                                  ") VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
    const int added =
        m_db.change(sql.constData(), m.searchId, m.key, m.route, m.fromCity, m.toCity, m.depart,
                    m.arrive, m.stopsText, m.flight, m.cabin, m.seats, m.points, m.travelDate,
                    m.bookingURL, m.soldOut, m.foundAt, m.durationMinutes);
    const qint64 id = added > 0 ? m_db.lastInsertId() : 0;
    if (id > 0 && telling == Telling::isDue)
        m_db.change("INSERT INTO untold (match_id) VALUES (?)", id);
    return id;
}

QList<Match> OfferStore::untold() {
    static const QByteArray sql = QByteArray("SELECT id,") + matchColumns +
                                  " FROM matches JOIN untold ON match_id = id ORDER BY id";
    QList<Match> matches;
    m_db.query(sql.constData(),
               [&matches](const SqliteRow& row) { matches.append(readMatch(row)); });
    return matches;
}

bool OfferStore::markTold(const QList<qint64>& matches) {
    return m_transaction([&] {
        for (const qint64 id : matches)
            m_db.change("DELETE FROM untold WHERE match_id = ?", id);
    });
}

QList<Match> OfferStore::recentMatches(int limit) {
    static const QByteArray sql = QByteArray("SELECT id,") + matchColumns +
                                  " FROM matches WHERE travel_date = '' OR travel_date >= ? "
                                  "ORDER BY id DESC LIMIT ?";
    QList<Match> matches;
    m_db.query(
        sql.constData(), [&matches](const SqliteRow& row) { matches.append(readMatch(row)); },
        DateFmt::iso(m_clock.today()), limit);
    return matches;
}

QMap<qint64, int> OfferStore::activeMatchCounts() {
    QMap<qint64, int> counts;
    m_db.query(
        "SELECT search_id, COUNT(*) FROM matches WHERE soldout = 0 AND "
        "(travel_date = '' OR travel_date >= ?) GROUP BY search_id",
        [&counts](const SqliteRow& row) {
            counts.insert(row.integer(0), static_cast<int>(row.integer(1)));
        },
        DateFmt::iso(m_clock.today()));
    return counts;
}

void OfferStore::deleteMatch(qint64 id) {
    m_db.change("DELETE FROM matches WHERE id = ?", id);
}

bool OfferStore::takeMatches() {
    bool isThere = false;
    const bool isTaken = m_transaction([&] {
        m_db.execute("DROP TABLE IF EXISTS temp.taken_offers;"
                     "CREATE TEMP TABLE taken_offers AS SELECT * FROM matches;");
        // With a condition, so that the rows are told as removed.
        isThere = m_db.change("DELETE FROM matches WHERE true") > 0;
    });
    return isTaken && isThere;
}

bool OfferStore::restoreMatches() {
    bool isThere = false;
    m_db.query("SELECT 1 FROM sqlite_temp_master WHERE name = 'taken_offers'",
               [&isThere](const SqliteRow&) { isThere = true; });
    return isThere && m_transaction([this] {
               m_db.execute("INSERT INTO matches SELECT * FROM temp.taken_offers "
                            "WHERE search_id = -1 OR search_id IN (SELECT id FROM searches);"
                            "DROP TABLE temp.taken_offers;");
           });
}
