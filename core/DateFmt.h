// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QDate>
#include <QString>

#include <optional>

/// Dates and times as short Norwegian texts, and the "yyyy-MM-dd" form that records use.
namespace DateFmt {

/// "yyyy-MM-dd".
QString iso(QDate date);
/// Absent when the text is not a date in exactly that form.
std::optional<QDate> parseIso(const QString& text);

/// How long before `now` something happened, such as "3 t siden".
QString ago(std::optional<Instant> instant, Instant now);
/// "2026-03-14" as "14.03.26"; a text of another form is returned unchanged.
QString shortDate(const QString& date);
/// "2026-03-14T09:05:00" as "14.03 09:05"; a text of another form is returned unchanged.
QString compact(const QString& dateTime);

} // namespace DateFmt
