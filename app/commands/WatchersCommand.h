// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/DataContext.h"
#include "core/Search.h"

#include <variant>

/// `tindra watchers list`.
struct ListWatchers {
    bool json = false;
    bool operator==(const ListWatchers&) const = default;

    CommandAnswer run(const DataContext& context) const;
};

/// `tindra watchers add`.
struct AddWatcher {
    Search watcher;
    bool operator==(const AddWatcher&) const = default;

    CommandAnswer run(const DataContext& context) const;
};

/// `tindra watchers pause`, `resume` and `remove`.
struct ChangeWatcher {
    enum class Change { pause, resume, remove };

    Change change = Change::pause;
    qint64 id = 0;
    bool operator==(const ChangeWatcher&) const = default;

    CommandAnswer run(const DataContext& context) const;
};

/// The command in the words after "watchers". Throws Err.
std::variant<ListWatchers, AddWatcher, ChangeWatcher> parseWatchers(const QStringList& words);

/// Throws Err when `text` is no watcher's number.
qint64 watcherId(const QString& text);
bool hasWatcher(Database& database, qint64 id);
CommandAnswer noSuchWatcher(qint64 id);
/// The database's problem and its notice, each on a line; mostly empty.
QString whatIsWrong(Database& database);
