// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Match.h"

#include <QByteArray>
#include <QList>

/// Offers as a table for spreadsheets. Pure functions.
namespace MatchTable {

/// Comma-separated values after RFC 4180 with a line of headings: UTF-8 with a byte order mark,
/// without which spreadsheets read Norwegian letters wrong. A text that a spreadsheet would take
/// for a formula gets an apostrophe in front. The address is there only where it may be opened.
QByteArray csv(const QList<Hit>& hits, const Site& site);

} // namespace MatchTable
