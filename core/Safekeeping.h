// SPDX-License-Identifier: MIT
#pragma once

#include "core/Transaction.h"

#include <QLatin1StringView>
#include <QString>

#include <initializer_list>
#include <optional>
#include <utility>

class KeyValues;

/// The names of all that is kept without being the user's choice. Each is written and read by one
/// class, which knows its form.
namespace Kept {

struct Name {
    QLatin1StringView text;
    /// Stands behind the text where each watcher has its own; otherwise 0.
    qint64 watcher = 0;

    QString key() const {
        return QString(text) + (watcher == 0 ? QString() : QString::number(watcher));
    }
};

/// The summary of the last round, by `Worker`.
inline constexpr Name lastPoll{QLatin1StringView("last_poll")};
/// Where a round that was cut short goes on, by `Worker`.
inline constexpr Name resumeRound{QLatin1StringView("resume_round")};
/// Where the rotation of a watcher's legs goes on, by `Worker`; an edit removes it.
constexpr Name lookupCursor(qint64 watcher) {
    return {QLatin1StringView("lookup_cursor_"), watcher};
}
/// Until when the airline is left alone, in seconds since 1970, and the length of the last pause of
/// our own, in seconds, by `StandBack`.
inline constexpr Name refusedUntil{QLatin1StringView("refused_until")};
inline constexpr Name refusedPause{QLatin1StringView("refused_pause")};
/// Which cookies there are, without their values, by `CookieVault`.
inline constexpr Name sessionCookies{QLatin1StringView("session_cookies")};
/// That the user knows of the hunt without a window, by `LifeCycle`.
inline constexpr Name toldBackground{QLatin1StringView("told_background")};
/// What has happened to the user's data, by `Database`.
inline constexpr Name storageNotice{QLatin1StringView("storage_notice")};
/// That files of earlier versions were cleaned, by `Database`.
inline constexpr Name routeCityCleanup{QLatin1StringView("migr_route_city_cleanup")};
inline constexpr Name duplicateCleanup{QLatin1StringView("migr_duplicate_matches")};

} // namespace Kept

/// What the program remembers from one run to the next.
class Safekeeping {
public:
    Safekeeping(KeyValues& values, Transaction transaction)
        : m_values(values), m_transaction(std::move(transaction)) {}

    /// Absent when there is none.
    std::optional<QString> get(const Kept::Name& name) const;
    /// Whether `note` was called for it, in this run or an earlier one.
    bool isNoted(const Kept::Name& name) const;

    /// These say whether it worked.
    bool note(const Kept::Name& name);
    bool set(const Kept::Name& name, const QString& text);
    /// All of them, or none.
    bool set(std::initializer_list<std::pair<Kept::Name, QString>> texts);
    bool remove(const Kept::Name& name);

private:
    KeyValues& m_values;
    Transaction m_transaction;
};
