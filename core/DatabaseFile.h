// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class SqliteConnection;

/// Database files as a whole: what state one is in, and how it is copied and moved safely.
namespace DatabaseFile {

/// The `user_version` of the files that this version writes; those of before it was kept have 0.
inline constexpr int schemaVersion = 1;

enum class Condition {
    usable,
    /// Not a database at all, or broken inside.
    damaged,
    /// Written by a later version of Tindra.
    newer,
    /// It cannot be read now, which says nothing about what it holds.
    unreadable,
};

struct Finding {
    Condition condition = Condition::usable;
    int version = 0;
    /// Holds the tables of a Tindra database; a new file has none.
    bool hasTables = false;
    /// Why it is not usable, in Norwegian.
    QString reason;
};

/// Reads the whole file: 25 ms for one of 13 MB with 100,000 seen fares and 2,000 offers.
Finding examine(SqliteConnection& database);

/// Writes what `from` holds now to the file `to`, readable by its owner only: all of it, on the
/// disk, or nothing. What was at `to` is replaced. Returns why it failed, in Norwegian; absent when
/// the copy is there.
std::optional<QString> copy(SqliteConnection& from, const QString& to);

/// Moves a closed database file, or what is left of it, with what SQLite keeps beside it. False
/// when it stays where it is.
bool move(const QString& from, const QString& to);
/// Removes a closed database file likewise.
void remove(const QString& path);
/// Moves what is at `path` to `aside`, and `with` to `path`. False when all stay where they are.
bool replace(const QString& path, const QString& with, const QString& aside);

} // namespace DatabaseFile
