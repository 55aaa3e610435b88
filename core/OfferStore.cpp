// SPDX-License-Identifier: MIT
#include "core/OfferStore.h"

#include "core/DateFmt.h"
#include "core/SqliteConnection.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto matchColumns = "search_id,key,route,from_city,to_city,depart,arrive,stops_text,"
                              "flight,cabin,seats,points,travel_date,booking_url,soldout,found_at,"
                              "duration_min";

// A sold-out record has this behind its key, its label for a route, and all its cabins.
const QString soldOutSuffix = u":soldout"_s;

SoldOut readSoldOut(const SqliteRow& row) {
    QString key = row.text(2);
    if (key.endsWith(soldOutSuffix))
        key.chop(soldOutSuffix.size());
    return {row.integer(0),
            row.integer(1),
            FareKey::fromText(key),
            decodeCabins(row.text(10)),
            row.text(3),
            instantFromSeconds(row.real(16))};
}

/// What a key of another form does not say stands beside it.
FareKey keyOf(const SqliteRow& row) {
    FareKey key = FareKey::fromText(row.text(2));
    if (!key.date.isValid())
        key.date = DateFmt::dateFromIso(row.text(13));
    if (key.route == Route())
        key.route = Route::fromText(row.text(3));
    return key;
}

Match readMatch(const SqliteRow& row, Cabin cabin) {
    Match match;
    match.id = row.integer(0);
    match.searchId = row.integer(1);
    match.key = keyOf(row);
    match.fromCity = row.text(4);
    match.toCity = row.text(5);
    match.depart = LocalTime::fromText(row.text(6), match.travelDate());
    match.arrive = LocalTime::fromText(row.text(7), match.depart.isKnown() ? match.depart.date()
                                                                           : match.travelDate());
    match.stops = Stops::fromText(row.text(8));
    match.cabin = cabin;
    match.seats = static_cast<int>(row.integer(11));
    match.points = static_cast<int>(row.integer(12));
    match.bookingURL = row.text(14);
    match.foundAt = instantFromSeconds(row.real(16));
    match.durationMinutes = static_cast<int>(row.integer(17));
    match.isCommunity = match.searchId == Match::communitySearchId;
    return match;
}

/// What is in no cabin stays in the file, and is nothing that could be shown or booked.
void readHit(const SqliteRow& row, QList<Hit>& hits) {
    if (row.integer(15) == 1)
        hits.append(readSoldOut(row));
    else if (const auto cabin = cabinFromRaw(row.text(10)))
        hits.append(readMatch(row, *cabin));
}

} // namespace

qint64 OfferStore::recordMatch(const Match& match, Telling telling) {
    return recordHit(match, telling);
}

qint64 OfferStore::recordSoldOut(const SoldOut& record, Telling telling) {
    return recordHit(record, telling);
}

qint64 OfferStore::recordHit(const Hit& hit, Telling telling) {
    static const QByteArray sql = QByteArray("INSERT INTO matches (") + matchColumns +
                                  ") VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
    const QString none;
    int added = 0;
    if (const auto* m = std::get_if<Match>(&hit))
        added = m_db.change(sql.constData(), m->searchId, m->key.text(), m->route().text(),
                            m->fromCity, m->toCity, m->depart.text(), m->arrive.text(),
                            m->stopsText(), m->key.flights, rawValue(m->cabin), m->seats, m->points,
                            DateFmt::iso(m->travelDate()), m->bookingURL, false, m->foundAt,
                            m->durationMinutes);
    else if (const auto* s = std::get_if<SoldOut>(&hit))
        added = m_db.change(sql.constData(), s->searchId, s->key.text() + soldOutSuffix, s->label,
                            none, none, none, none, none, none, encodeCabins(s->cabins), 0, 0,
                            DateFmt::iso(s->key.date), none, true, s->foundAt, 0);
    const qint64 id = added > 0 ? m_db.lastInsertId() : 0;
    if (id > 0 && telling == Telling::isDue)
        m_db.change("INSERT INTO untold (match_id) VALUES (?)", id);
    return id;
}

QList<Hit> OfferStore::untold() {
    static const QByteArray sql = QByteArray("SELECT id,") + matchColumns +
                                  " FROM matches JOIN untold ON match_id = id ORDER BY id";
    QList<Hit> hits;
    m_db.query(sql.constData(), [&hits](const SqliteRow& row) { readHit(row, hits); });
    return hits;
}

bool OfferStore::markTold(const QList<qint64>& matches) {
    return m_transaction([&] {
        for (const qint64 id : matches)
            m_db.change("DELETE FROM untold WHERE match_id = ?", id);
    });
}

QList<Hit> OfferStore::recentMatches(int limit) {
    static const QByteArray sql = QByteArray("SELECT id,") + matchColumns +
                                  " FROM matches WHERE travel_date = '' OR travel_date >= ? "
                                  "ORDER BY id DESC LIMIT ?";
    QList<Hit> hits;
    m_db.query(
        sql.constData(), [&hits](const SqliteRow& row) { readHit(row, hits); },
        DateFmt::iso(m_clock.today()), limit);
    return hits;
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

bool OfferStore::deleteMatch(qint64 id) {
    return m_db.query("DELETE FROM matches WHERE id = ?", {}, id);
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
