// SPDX-License-Identifier: MIT
#include "core/Database.h"

#include "core/DateFmt.h"
#include "core/TDLog.h"
#include "core/Text.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

constexpr auto matchColumns = "search_id,key,route,from_city,to_city,depart,arrive,stops_text,"
                              "flight,cabin,seats,points,travel_date,booking_url,soldout,found_at,"
                              "duration_min";

Search readSearch(const SqliteRow& row) {
    Search search;
    search.id = row.integer(0);
    search.name = row.text(1);
    search.origin = row.text(2);
    search.destination = row.text(3);
    search.cabins = decodeCabins(row.text(4));
    search.minSeats = static_cast<int>(row.integer(5));
    search.maxStops = static_cast<int>(row.integer(6));
    search.dateFrom = DateFmt::dateFromIso(row.text(7));
    search.dateTo = DateFmt::dateFromIso(row.text(8));
    search.returnDateFrom = DateFmt::dateFromIso(row.text(9));
    search.returnDateTo = DateFmt::dateFromIso(row.text(10));
    search.enabled = row.integer(11) == 1;
    if (!row.isNull(12))
        search.lastChecked = instantFromSeconds(row.real(12));
    search.lastFound = static_cast<int>(row.integer(13));
    search.includePartners = row.integer(14) == 1;
    return search;
}

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

bool Database::transaction(const std::function<void()>& work) {
    m_failed = false;
    // A file that was refused stays so until `recover` has opened it.
    if (m_problem && !m_isOpen)
        return false;
    if (!m_db.execute("BEGIN IMMEDIATE"))
        return false;
    auto rollBack = qScopeGuard([this] { m_db.execute("ROLLBACK"); });
    work();
    if (m_failed || !m_db.execute("COMMIT"))
        return false;
    rollBack.dismiss();
    // What is broken in one place still takes changes in another.
    if (!m_isDamaged)
        m_problem.reset();
    return true;
}

void Database::noteFailure(const QString& message) {
    m_failed = true;
    if (m_db.isDamaged()) {
        noteDamage(message);
        return;
    }
    // Once is enough until something works again.
    if (m_problem)
        return;
    m_problem =
        u"Tindra får ikke lagret noe (%1). Det prøves igjen i neste runde."_s.arg(m_db.reason());
    TDLog::note(u"database: lagring feilet: "_s + message);
}

void Database::noteDamage(const QString& message) {
    if (std::exchange(m_isDamaged, true))
        return;
    m_problem = u"Databasen er skadet, og det som lagres nå, kan gå tapt. I neste runde settes den "
                "til side, og den siste gode kopien tas i bruk."_s;
    TDLog::note(u"database: skadet: "_s + message);
}

std::optional<QString> Database::get(const QString& key) {
    std::optional<QString> value;
    m_db.query(
        "SELECT value FROM kv WHERE key = ?",
        [&value](const SqliteRow& row) { value = row.text(0); }, key);
    return value;
}

void Database::set(const QString& key, const QString& value) {
    m_db.change("INSERT INTO kv (key,value) VALUES (?,?) "
                "ON CONFLICT(key) DO UPDATE SET value=excluded.value",
                key, value);
}

bool Database::isOn(const QString& key, bool whenMissing) {
    const auto value = get(key);
    return value ? *value == u'1' : whenMissing;
}

QList<Search> Database::listSearches() {
    QList<Search> searches;
    m_db.query("SELECT id,name,origin,destination,cabins,min_seats,max_stops,date_from,date_to,"
               "return_date_from,return_date_to,enabled,last_checked,last_found,include_partners "
               "FROM searches ORDER BY id",
               [&searches](const SqliteRow& row) { searches.append(readSearch(row)); });
    return searches;
}

void Database::addSearch(const Search& s) {
    const int added = m_db.change(
        "INSERT INTO searches (name,origin,destination,cabins,min_seats,max_stops,"
        "date_from,date_to,return_date_from,return_date_to,include_partners,enabled) "
        "VALUES (?,?,?,?,?,?,?,?,?,?,?,1)",
        s.name, s.origin, s.destination, encodeCabins(s.cabins), s.minSeats, s.maxStops,
        DateFmt::iso(s.dateFrom), DateFmt::iso(s.dateTo), DateFmt::iso(s.returnDateFrom),
        DateFmt::iso(s.returnDateTo), s.includePartners);
    const QString route = s.origin + u"->"_s + s.destination;
    if (added > 0)
        TDLog::note(u"addSearch OK: %1 id=%2"_s.arg(route).arg(m_db.lastInsertId()));
    else
        TDLog::note(u"addSearch FEILET: %1 (%2)"_s.arg(m_db.errorMessage(), route));
}

void Database::updateSearch(const Search& s) {
    m_db.change("UPDATE searches SET name=?, origin=?, destination=?, cabins=?,\n"
                "  min_seats=?, max_stops=?, date_from=?, date_to=?,\n"
                "  return_date_from=?, return_date_to=?, include_partners=?\n"
                "WHERE id=?",
                trimmedBlanks(s.name), s.origin, s.destination, encodeCabins(s.cabins), s.minSeats,
                s.maxStops, DateFmt::iso(s.dateFrom), DateFmt::iso(s.dateTo),
                DateFmt::iso(s.returnDateFrom), DateFmt::iso(s.returnDateTo), s.includePartners,
                s.id);
    m_db.change("DELETE FROM kv WHERE key = ?", u"lookup_cursor_%1"_s.arg(s.id));
}

void Database::renameSearch(qint64 id, const QString& name) {
    m_db.change("UPDATE searches SET name = ? WHERE id = ?", trimmedBlanks(name), id);
}

void Database::toggleSearch(qint64 id) {
    m_db.change("UPDATE searches SET enabled = 1 - enabled WHERE id = ?", id);
}

void Database::deleteSearch(qint64 id) {
    m_db.change("DELETE FROM searches WHERE id = ?", id);
    m_db.change("DELETE FROM seen WHERE search_id = ?", id);
    m_db.change("DELETE FROM matches WHERE search_id = ?", id);
}

// The rows move within SQLite, so that it takes no longer for a watcher with thousands of offers
// and loses no column that this version does not read.
bool Database::takeSearch(qint64 id) {
    bool isThere = false;
    m_db.query(
        "SELECT 1 FROM searches WHERE id = ?", [&isThere](const SqliteRow&) { isThere = true; },
        id);
    return isThere && transaction([&] {
               m_db.execute("DROP TABLE IF EXISTS temp.taken_searches;"
                            "DROP TABLE IF EXISTS temp.taken_seen;"
                            "DROP TABLE IF EXISTS temp.taken_matches;");
               m_db.query("CREATE TEMP TABLE taken_searches AS SELECT * FROM searches WHERE id = ?",
                          {}, id);
               m_db.query("CREATE TEMP TABLE taken_seen AS SELECT * FROM seen WHERE search_id = ?",
                          {}, id);
               m_db.query(
                   "CREATE TEMP TABLE taken_matches AS SELECT * FROM matches WHERE search_id = ?",
                   {}, id);
               deleteSearch(id);
           });
}

bool Database::restoreSearch() {
    bool isThere = false;
    m_db.query("SELECT 1 FROM sqlite_temp_master WHERE name = 'taken_searches'",
               [&isThere](const SqliteRow&) { isThere = true; });
    return isThere && transaction([this] {
               m_db.execute("INSERT INTO searches SELECT * FROM temp.taken_searches;"
                            "INSERT INTO seen SELECT * FROM temp.taken_seen;"
                            "INSERT INTO matches SELECT * FROM temp.taken_matches;"
                            "DROP TABLE temp.taken_searches;"
                            "DROP TABLE temp.taken_seen;"
                            "DROP TABLE temp.taken_matches;");
           });
}

void Database::markChecked(qint64 id, int found) {
    m_db.change("UPDATE searches SET last_checked = ?, last_found = ? WHERE id = ?", m_clock.now(),
                found, id);
}

qint64 Database::recordMatch(const Match& match, Telling telling) {
    return recordHit(match, telling);
}

qint64 Database::recordSoldOut(const SoldOut& record, Telling telling) {
    return recordHit(record, telling);
}

qint64 Database::recordHit(const Hit& hit, Telling telling) {
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

QList<Hit> Database::untold() {
    static const QByteArray sql = QByteArray("SELECT id,") + matchColumns +
                                  " FROM matches JOIN untold ON match_id = id ORDER BY id";
    QList<Hit> hits;
    m_db.query(sql.constData(), [&hits](const SqliteRow& row) { readHit(row, hits); });
    return hits;
}

bool Database::markTold(const QList<qint64>& matches) {
    return transaction([&] {
        for (const qint64 id : matches)
            m_db.change("DELETE FROM untold WHERE match_id = ?", id);
    });
}

QList<Hit> Database::recentMatches(int limit) {
    static const QByteArray sql = QByteArray("SELECT id,") + matchColumns +
                                  " FROM matches WHERE travel_date = '' OR travel_date >= ? "
                                  "ORDER BY id DESC LIMIT ?";
    QList<Hit> hits;
    m_db.query(
        sql.constData(), [&hits](const SqliteRow& row) { readHit(row, hits); },
        DateFmt::iso(m_clock.today()), limit);
    return hits;
}

QMap<qint64, int> Database::activeMatchCounts() {
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

void Database::forgetTravelledCommunityFinds() {
    const QDate today = m_clock.today();
    transaction([&] {
        for (const OfferId& seen : seenOfOthers()) {
            if (seen.key.date.isValid() && seen.key.date < today)
                m_db.change("DELETE FROM seen WHERE search_id = ? AND fare_key = ?",
                            Match::communitySearchId, seen.text());
        }
    });
}

void Database::deleteMatch(qint64 id) {
    m_db.change("DELETE FROM matches WHERE id = ?", id);
}

bool Database::takeMatches() {
    bool isThere = false;
    const bool isTaken = transaction([&] {
        m_db.execute("DROP TABLE IF EXISTS temp.taken_offers;"
                     "CREATE TEMP TABLE taken_offers AS SELECT * FROM matches;");
        isThere = m_db.change("DELETE FROM matches") > 0;
    });
    return isTaken && isThere;
}

bool Database::restoreMatches() {
    bool isThere = false;
    m_db.query("SELECT 1 FROM sqlite_temp_master WHERE name = 'taken_offers'",
               [&isThere](const SqliteRow&) { isThere = true; });
    return isThere && transaction([this] {
               m_db.execute("INSERT INTO matches SELECT * FROM temp.taken_offers "
                            "WHERE search_id = -1 OR search_id IN (SELECT id FROM searches);"
                            "DROP TABLE temp.taken_offers;");
           });
}

QMap<FareKey, Database::Seen> Database::seenCabins(qint64 searchId) {
    QMap<FareKey, Seen> seen;
    m_db.query(
        "SELECT fare_key,cabins,label FROM seen WHERE search_id = ?",
        [&seen](const SqliteRow& row) {
            seen.insert(FareKey::fromText(row.text(0)), {decodeCabins(row.text(1)), row.text(2)});
        },
        searchId);
    return seen;
}

void Database::upsertSeen(qint64 searchId, const FareKey& key, const Seen& seen) {
    putSeen(searchId, key.text(), encodeCabins(seen.cabins), seen.label);
}

QSet<OfferId> Database::seenOfOthers() {
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

void Database::noteSeenOfOthers(const Match& find) {
    putSeen(Match::communitySearchId, find.offer().text(), rawValue(find.cabin),
            find.route().text());
}

void Database::putSeen(qint64 searchId, const QString& key, const QString& cabins,
                       const QString& label) {
    m_db.change("INSERT INTO seen (search_id,fare_key,cabins,label) VALUES (?,?,?,?) "
                "ON CONFLICT(search_id,fare_key) DO UPDATE SET cabins=excluded.cabins, "
                "label=excluded.label",
                searchId, key, cabins, label);
}
