// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QDate>
#include <QString>

#include <optional>

/// Dates and times as short Norwegian texts, and the "yyyy-MM-dd" form that records use.
namespace DateFmt {

/// "yyyy-MM-dd"; empty for an invalid date.
QString iso(QDate date);
/// Absent when the text is not a date in exactly that form.
std::optional<QDate> parseIso(QStringView text);
/// The same as records have it: an empty text for an invalid date, and the other way round.
QDate dateFromIso(QStringView text);
/// "yyyyMMdd", as addresses have it; empty for an invalid date.
QString compact(QDate date);

/// How long before `now` something happened, such as "3 t siden".
QString ago(std::optional<Instant> instant, Instant now);
/// Such as "14.03.26"; empty for an invalid date.
QString shortDate(QDate date);

} // namespace DateFmt
