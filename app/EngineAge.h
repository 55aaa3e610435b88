// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>

#include <optional>

/// Whether the web engine still gets its security updates. A pure rule, and a cautious one: it
/// knows the schedule, not what a distribution does beyond it.
///
/// WebKitGTK makes a stable series (2.even) twice a year, with GNOME: 2.50 in September 2025, 2.52
/// in March 2026, and so on. A series gets updates until the next is out, and distributions take
/// some months to follow (trac.webkit.org/wiki/WebKitGTK/StableRelease). So one counts as too old
/// when the second one after it has been out for a month. A development series (2.odd) counts like
/// the stable one before it.
namespace EngineAge {

/// What to tell the user, in Norwegian, when `version`, such as "2.50.6", is too old to be safe on
/// `today`. Absent when it is not, and for a version that is not of that form.
std::optional<QString> warning(const QString& version, QDate today);

} // namespace EngineAge
