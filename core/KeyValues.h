// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

class SqliteConnection;

/// The table of texts by name that `Settings` and `Safekeeping` are kept in.
class KeyValues {
public:
    explicit KeyValues(SqliteConnection& db) : m_db(db) {}

    /// Absent when it was never set.
    std::optional<QString> get(const QString& key) const;
    /// These say whether it worked.
    bool set(const QString& key, const QString& value);
    bool remove(const QString& key);

private:
    SqliteConnection& m_db;
};
