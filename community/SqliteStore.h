// SPDX-License-Identifier: MIT
#pragma once

#include "community/Store.h"

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace community {

/// Finds in one SQLite file. A power failure may lose the last seconds, never the file.
class SqliteStore final : public Store {
public:
    /// Opens or creates the file, readable by its owner only; ":memory:" keeps them in memory.
    /// Above `most` finds the oldest are dropped. Throws StoreError.
    SqliteStore(const std::string& path, std::size_t most);

    void apply(const std::vector<Change>& changes, Time now) override;
    std::vector<std::vector<StoredFind>> newest(const std::vector<std::string>& routes,
                                                Time now) override;
    void ping() override;

private:
    struct Close {
        void operator()(sqlite3* db) const;
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Close>;

    void execute(const char* script);
    Statement prepare(const char* sql);
    void run(const Statement& statement);
    [[noreturn]] void fail() const;
    void dropOverflow(std::size_t changes);

    std::unique_ptr<sqlite3, Close> m_db;
    std::size_t m_most;
    std::size_t m_unchecked = 0; // changes since the finds were last counted
    Statement m_put;
    Statement m_drop;
    Statement m_expire;
    Statement m_overflow;
    Statement m_read;
    Statement m_ping;
};

/// Opens or creates this file when the service starts.
StoreMaker inSqlite(std::string path);

} // namespace community
