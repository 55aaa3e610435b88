// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

/// The outcome of one poll round.
struct PollSummary {
    /// When the round started.
    Instant at{};
    /// Watchers looked up.
    int searches = 0;
    /// Fares read from the airline's responses, over all watchers.
    int fetched = 0;
    /// Fares that satisfied their watcher, each counted once.
    int matches = 0;
    /// Cabins that became available, one per new match.
    int newAlerts = 0;
    /// Fares seen before whose cabins have vanished.
    int soldOut = 0;
    /// One Norwegian line per watcher whose lookup failed.
    QStringList errors;
    /// One Norwegian line per watcher that did not get all of its answers.
    QStringList notes;

    bool operator==(const PollSummary&) const = default;

    /// The stored form: "at" in seconds since 1970, "searches", "fetched", "matches", "new",
    /// "soldout", "errors", and "notes" where there are any.
    QJsonObject toJson() const;
    /// Absent when the text is not a JSON object; members that are missing or of another type
    /// read as 0 or empty.
    static std::optional<PollSummary> fromJson(const QString& text);
};
