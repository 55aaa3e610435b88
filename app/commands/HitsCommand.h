// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/DataContext.h"

#include <optional>

/// `tindra hits`: the stored offers that can still be travelled, the newest first.
struct ListHits {
    enum class Format { text, json, csv };

    Format format = Format::text;
    /// Only those of this watcher.
    std::optional<qint64> watcher;
    /// With records of what has sold out.
    bool withSoldOut = false;
    bool operator==(const ListHits&) const = default;

    static ListHits parse(const QStringList& words);
    CommandAnswer run(const DataContext& context) const;
};
