// SPDX-License-Identifier: MIT
#include "core/WatcherStore.h"

#include "core/DateFmt.h"
#include "core/Safekeeping.h"
#include "core/SqliteConnection.h"
#include "core/TDLog.h"
#include "core/Text.h"

using namespace Qt::StringLiterals;

namespace {

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

} // namespace

QList<Search> WatcherStore::listSearches() {
    QList<Search> searches;
    m_db.query("SELECT id,name,origin,destination,cabins,min_seats,max_stops,date_from,date_to,"
               "return_date_from,return_date_to,enabled,last_checked,last_found,include_partners "
               "FROM searches ORDER BY id",
               [&searches](const SqliteRow& row) { searches.append(readSearch(row)); });
    return searches;
}

qint64 WatcherStore::addSearch(const Search& s) {
    const int added = m_db.change(
        "INSERT INTO searches (name,origin,destination,cabins,min_seats,max_stops,"
        "date_from,date_to,return_date_from,return_date_to,include_partners,enabled) "
        "VALUES (?,?,?,?,?,?,?,?,?,?,?,1)",
        s.name, s.origin, s.destination, encodeCabins(s.cabins), s.minSeats, s.maxStops,
        DateFmt::iso(s.dateFrom), DateFmt::iso(s.dateTo), DateFmt::iso(s.returnDateFrom),
        DateFmt::iso(s.returnDateTo), s.includePartners);
    const QString route = s.origin + u"->"_s + s.destination;
    if (added == 0) {
        TDLog::note(u"addSearch FEILET: %1 (%2)"_s.arg(m_db.errorMessage(), route));
        return 0;
    }
    const qint64 id = m_db.lastInsertId();
    TDLog::note(u"addSearch OK: %1 id=%2"_s.arg(route).arg(id));
    return id;
}

bool WatcherStore::updateSearch(const Search& s) {
    return m_db.query("UPDATE searches SET name=?, origin=?, destination=?, cabins=?,\n"
                      "  min_seats=?, max_stops=?, date_from=?, date_to=?,\n"
                      "  return_date_from=?, return_date_to=?, include_partners=?\n"
                      "WHERE id=?",
                      {}, trimmedBlanks(s.name), s.origin, s.destination, encodeCabins(s.cabins),
                      s.minSeats, s.maxStops, DateFmt::iso(s.dateFrom), DateFmt::iso(s.dateTo),
                      DateFmt::iso(s.returnDateFrom), DateFmt::iso(s.returnDateTo),
                      s.includePartners, s.id) &&
           m_kept.remove(Kept::lookupCursor(s.id));
}

bool WatcherStore::renameSearch(qint64 id, const QString& name) {
    return m_db.query("UPDATE searches SET name = ? WHERE id = ?", {}, trimmedBlanks(name), id);
}

bool WatcherStore::toggleSearch(qint64 id) {
    return m_db.query("UPDATE searches SET enabled = 1 - enabled WHERE id = ?", {}, id);
}

bool WatcherStore::deleteSearch(qint64 id) {
    return m_db.query("DELETE FROM searches WHERE id = ?", {}, id) &&
           m_db.query("DELETE FROM seen WHERE search_id = ?", {}, id) &&
           m_db.query("DELETE FROM matches WHERE search_id = ?", {}, id);
}

// The rows move within SQLite, so that it takes no longer for a watcher with thousands of offers
// and loses no column that this version does not read.
bool WatcherStore::takeSearch(qint64 id) {
    bool isThere = false;
    m_db.query(
        "SELECT 1 FROM searches WHERE id = ?", [&isThere](const SqliteRow&) { isThere = true; },
        id);
    return isThere && m_transaction([&] {
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

bool WatcherStore::restoreSearch() {
    bool isThere = false;
    m_db.query("SELECT 1 FROM sqlite_temp_master WHERE name = 'taken_searches'",
               [&isThere](const SqliteRow&) { isThere = true; });
    return isThere && m_transaction([this] {
               m_db.execute("INSERT INTO searches SELECT * FROM temp.taken_searches;"
                            "INSERT INTO seen SELECT * FROM temp.taken_seen;"
                            "INSERT INTO matches SELECT * FROM temp.taken_matches;"
                            "DROP TABLE temp.taken_searches;"
                            "DROP TABLE temp.taken_seen;"
                            "DROP TABLE temp.taken_matches;");
           });
}

bool WatcherStore::markChecked(qint64 id, int found) {
    return m_db.query("UPDATE searches SET last_checked = ?, last_found = ? WHERE id = ?", {},
                      m_clock.now(), found, id);
}
