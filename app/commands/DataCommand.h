// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/BackupCommand.h"
#include "app/commands/HitsCommand.h"
#include "app/commands/WatchersCommand.h"

#include <variant>

/// A command that needs nothing but the database: no web view, no display, no airline.
using DataCommand = std::variant<ListWatchers, AddWatcher, ChangeWatcher, ListHits, BackUp>;

/// Whether a Tindra that runs should carry it out, so that it notices.
inline bool changesData(const DataCommand& command) {
    return std::holds_alternative<AddWatcher>(command) ||
           std::holds_alternative<ChangeWatcher>(command);
}

inline CommandAnswer run(const DataCommand& command, const DataContext& context) {
    return std::visit([&context](const auto& one) { return one.run(context); }, command);
}
