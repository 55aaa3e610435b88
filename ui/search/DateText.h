// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>

#include <optional>

/// Travel dates as the search form shows and reads them, in Norwegian whatever the system.
namespace DateText {

/// "7. mar. – 6. mai 2026"; the year is the last day's.
QString window(QDate from, QDate to);
/// "07.03.2026".
QString typed(QDate date);
/// A date as people type it: "7.3.2026", "07.03.26", "7/3", "2026-03-07". Without a year it is the
/// next such day from `today` on. Absent when it is no date.
std::optional<QDate> parse(const QString& text, QDate today);

} // namespace DateText
