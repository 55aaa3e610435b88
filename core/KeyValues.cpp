// SPDX-License-Identifier: MIT
#include "core/KeyValues.h"

#include "core/SqliteConnection.h"

std::optional<QString> KeyValues::get(const QString& key) const {
    std::optional<QString> value;
    m_db.query(
        "SELECT value FROM kv WHERE key = ?",
        [&value](const SqliteRow& row) { value = row.text(0); }, key);
    return value;
}

bool KeyValues::set(const QString& key, const QString& value) {
    return m_db.query("INSERT INTO kv (key,value) VALUES (?,?) "
                      "ON CONFLICT(key) DO UPDATE SET value=excluded.value",
                      {}, key, value);
}

bool KeyValues::remove(const QString& key) {
    return m_db.query("DELETE FROM kv WHERE key = ?", {}, key);
}
