// SPDX-License-Identifier: MIT
// How a database file is filled, brought up to date and cleaned when it is opened.
#include "airports/Airports.h"
#include "core/Database.h"
#include "core/DatabaseCopies.h"
#include "core/DatabaseFile.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto schema = R"(
CREATE TABLE IF NOT EXISTS searches (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    name TEXT NOT NULL DEFAULT '',
    origin TEXT NOT NULL,
    destination TEXT NOT NULL DEFAULT '',
    cabins TEXT NOT NULL DEFAULT 'business',
    min_seats INTEGER NOT NULL DEFAULT 1,
    max_stops INTEGER NOT NULL DEFAULT 2,
    date_from TEXT NOT NULL DEFAULT '',
    date_to TEXT NOT NULL DEFAULT '',
    return_date_from TEXT NOT NULL DEFAULT '',
    return_date_to TEXT NOT NULL DEFAULT '',
    enabled INTEGER NOT NULL DEFAULT 1,
    last_checked REAL,
    last_found INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE IF NOT EXISTS seen (
    search_id INTEGER NOT NULL,
    fare_key TEXT NOT NULL,
    cabins TEXT NOT NULL DEFAULT '',
    label TEXT NOT NULL DEFAULT '',
    PRIMARY KEY (search_id, fare_key)
);
CREATE TABLE IF NOT EXISTS matches (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    search_id INTEGER NOT NULL,
    key TEXT NOT NULL,
    route TEXT NOT NULL DEFAULT '',
    from_city TEXT NOT NULL DEFAULT '',
    to_city TEXT NOT NULL DEFAULT '',
    depart TEXT NOT NULL DEFAULT '',
    arrive TEXT NOT NULL DEFAULT '',
    stops_text TEXT NOT NULL DEFAULT '',
    flight TEXT NOT NULL DEFAULT '',
    cabin TEXT NOT NULL DEFAULT '',
    seats INTEGER NOT NULL DEFAULT 0,
    points INTEGER NOT NULL DEFAULT 0,
    travel_date TEXT NOT NULL DEFAULT '',
    booking_url TEXT NOT NULL DEFAULT '',
    soldout INTEGER NOT NULL DEFAULT 0,
    found_at REAL NOT NULL
);
CREATE TABLE IF NOT EXISTS kv (key TEXT PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS untold (match_id INTEGER PRIMARY KEY);
)";

} // namespace

/// Nothing here harms a file that is up to date already.
void Database::upgrade() {
    QString failure;
    m_db.setErrorHandler([this, &failure](const QString&) {
        if (failure.isEmpty())
            failure = m_db.reason();
    });
    // What is announced must survive a power cut, so every commit reaches the disk.
    m_db.execute("PRAGMA journal_mode = WAL");
    m_db.execute("PRAGMA synchronous = FULL");
    m_db.execute(schema);
    // A write that changes nothing shows whether the file takes any.
    m_db.execute("DELETE FROM kv WHERE key = ''");
    if (!failure.isEmpty()) {
        refuse(u"Databasen %1 kan ikke brukes (%2). Ingenting blir lagret. Sjekk at filen er "
               u"en Tindra-database og at du har skrivetilgang."_s.arg(
                   DatabaseCopies::main(m_folder), failure));
        return;
    }
    // Files of earlier versions lack these; the failure on all others means nothing.
    m_db.execute("ALTER TABLE matches ADD COLUMN duration_min INTEGER NOT NULL DEFAULT 0");
    m_db.execute("ALTER TABLE searches ADD COLUMN include_partners INTEGER NOT NULL DEFAULT 0");
    m_db.setErrorHandler([this](const QString& message) { noteFailure(message); });
    cleanupMismatchedMatches();
    cleanupDuplicateMatches();
    m_db.execute("DELETE FROM matches WHERE search_id != -1 AND "
                 "search_id NOT IN (SELECT id FROM searches)");
    m_db.execute("DELETE FROM untold WHERE match_id NOT IN (SELECT id FROM matches)");
    if (m_version < DatabaseFile::schemaVersion && !m_problem)
        m_db.execute(QByteArray("PRAGMA user_version = ") +
                     QByteArray::number(DatabaseFile::schemaVersion));
}

/// Earlier versions could store an offer under the cities of another route.
void Database::cleanupMismatchedMatches() {
    if (m_safekeeping.isNoted(Kept::routeCityCleanup))
        return;
    struct Row {
        qint64 id;
        QString key;
    };
    QList<Row> wrong;
    m_db.query("SELECT id,key,route,from_city,to_city FROM matches WHERE soldout = 0",
               [&wrong](const SqliteRow& row) {
                   const QStringList codes = row.text(2).split(u'-', Qt::SkipEmptyParts);
                   if (codes.size() == 2 && !(Airports::cityConsistent(codes[0], row.text(3)) &&
                                              Airports::cityConsistent(codes[1], row.text(4))))
                       wrong.append({row.integer(0), row.text(1)});
               });
    // An offer without its seen rows, or the other way round, would be reported twice or never.
    transaction([&] {
        for (const Row& row : wrong) {
            m_db.change("DELETE FROM matches WHERE id = ?", row.id);
            // For every watcher, so that the offer can be found and reported afresh.
            m_db.change("DELETE FROM seen WHERE fare_key = ?", row.key);
        }
    });
    m_safekeeping.note(Kept::routeCityCleanup);
}

/// Earlier versions could store the same offer several times; the newest stays.
void Database::cleanupDuplicateMatches() {
    if (m_safekeeping.isNoted(Kept::duplicateCleanup))
        return;
    m_db.change("DELETE FROM matches WHERE soldout = 0 AND id NOT IN (\n"
                "  SELECT MAX(id) FROM matches WHERE soldout = 0\n"
                "  GROUP BY search_id, key, cabin)");
    m_safekeeping.note(Kept::duplicateCleanup);
}
