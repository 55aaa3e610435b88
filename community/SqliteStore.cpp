// SPDX-License-Identifier: MIT
#include "community/SqliteStore.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <string_view>

namespace community {

namespace {

// Checkpoints wait for the disk, so they come seldom: the log may grow to some 32 MB.
constexpr const char* schema = R"(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = NORMAL;
PRAGMA wal_autocheckpoint = 8000;
PRAGMA journal_size_limit = 40000000;
CREATE TABLE IF NOT EXISTS finds (
    id TEXT NOT NULL UNIQUE,
    route TEXT NOT NULL,
    reported INTEGER NOT NULL,
    json TEXT NOT NULL
);
CREATE INDEX IF NOT EXISTS finds_of_route ON finds (route, reported);
CREATE INDEX IF NOT EXISTS finds_by_age ON finds (reported);
)";

// Not called bind: with a string among the arguments that would find the library's.
void bindText(sqlite3_stmt* statement, int index, std::string_view text) {
    sqlite3_bind_text(statement, index, text.data(), int(text.size()), SQLITE_STATIC);
}

void bindTime(sqlite3_stmt* statement, int index, Time time) {
    sqlite3_bind_int64(statement, index, time.time_since_epoch().count());
}

// Undoes what was not committed.
class Transaction {
public:
    explicit Transaction(sqlite3* db) : m_db(db) {}
    ~Transaction() {
        if (sqlite3_get_autocommit(m_db) == 0)
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

private:
    sqlite3* m_db;
};

// SQLite itself would let everybody read the file.
void createPrivately(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::create_directories(path.parent_path(), error))
        std::filesystem::permissions(path.parent_path(), std::filesystem::perms::owner_all, error);
    if (const int file = ::open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600); file >= 0)
        ::close(file);
}

} // namespace

void SqliteStore::Close::operator()(sqlite3* db) const {
    sqlite3_close_v2(db);
}

void SqliteStore::Close::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SqliteStore::SqliteStore(const std::string& path, std::size_t most) : m_most(most) {
    if (path != ":memory:")
        createPrivately(path);
    sqlite3* db = nullptr;
    const int opened =
        sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    m_db.reset(db);
    if (opened != SQLITE_OK)
        fail();
    sqlite3_busy_timeout(db, 1000);
    execute(schema);
    m_put = prepare("INSERT INTO finds (id, route, reported, json) VALUES (?, ?, ?, ?) "
                    "ON CONFLICT (id) DO UPDATE SET route = excluded.route, "
                    "reported = excluded.reported, json = excluded.json");
    m_drop = prepare("DELETE FROM finds WHERE id = ?");
    m_expire = prepare("DELETE FROM finds WHERE reported <= ?");
    m_overflow =
        prepare("DELETE FROM finds WHERE rowid IN (SELECT rowid FROM finds ORDER BY reported "
                "LIMIT max(0, (SELECT count(*) FROM finds) - ?))");
    m_read = prepare("SELECT json, reported FROM finds WHERE route = ? AND reported > ? "
                     "ORDER BY reported DESC, rowid DESC LIMIT ?");
    m_ping = prepare("SELECT 1 FROM finds LIMIT 1");
}

void SqliteStore::apply(const std::vector<Change>& changes, Time now) {
    execute("BEGIN IMMEDIATE");
    const Transaction transaction(m_db.get());
    for (const Change& change : changes) {
        const Statement& statement = change.json.empty() ? m_drop : m_put;
        bindText(statement.get(), 1, change.identity);
        if (!change.json.empty()) {
            bindText(statement.get(), 2, change.route);
            bindTime(statement.get(), 3, now);
            bindText(statement.get(), 4, change.json);
        }
        run(statement);
    }
    bindTime(m_expire.get(), 1, now - lifetime);
    run(m_expire);
    dropOverflow(changes.size());
    execute("COMMIT");
}

// Counting takes a millisecond or two of a full store, so it is not done for every few changes.
void SqliteStore::dropOverflow(std::size_t changes) {
    m_unchecked += changes;
    if (m_unchecked < m_most / 100)
        return;
    sqlite3_bind_int64(m_overflow.get(), 1, sqlite3_int64(m_most));
    run(m_overflow);
    m_unchecked = 0;
}

std::vector<std::vector<StoredFind>> SqliteStore::newest(const std::vector<std::string>& routes,
                                                         Time now) {
    std::vector<std::vector<StoredFind>> result;
    result.reserve(routes.size());
    sqlite3_stmt* const read = m_read.get();
    for (const std::string& route : routes) {
        bindText(read, 1, route);
        bindTime(read, 2, now - lifetime);
        sqlite3_bind_int64(read, 3, mostOfRoute);
        std::vector<StoredFind>& finds = result.emplace_back();
        int step = 0;
        while ((step = sqlite3_step(read)) == SQLITE_ROW)
            finds.push_back({reinterpret_cast<const char*>(sqlite3_column_text(read, 0)),
                             Time(std::chrono::milliseconds(sqlite3_column_int64(read, 1)))});
        sqlite3_reset(read);
        if (step != SQLITE_DONE)
            fail();
    }
    return result;
}

void SqliteStore::ping() {
    run(m_ping);
}

void SqliteStore::execute(const char* script) {
    if (sqlite3_exec(m_db.get(), script, nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

SqliteStore::Statement SqliteStore::prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(m_db.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) !=
        SQLITE_OK)
        fail();
    return Statement(statement);
}

void SqliteStore::run(const Statement& statement) {
    const int step = sqlite3_step(statement.get());
    sqlite3_reset(statement.get());
    if (step != SQLITE_DONE && step != SQLITE_ROW)
        fail();
}

void SqliteStore::fail() const {
    throw StoreError(m_db ? sqlite3_errmsg(m_db.get()) : "out of memory");
}

StoreMaker inSqlite(std::string path) {
    return [path = std::move(path)](std::size_t most) {
        return std::make_unique<SqliteStore>(path, most);
    };
}

} // namespace community
