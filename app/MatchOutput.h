// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"

#include <QByteArray>
#include <QJsonArray>
#include <QList>
#include <QString>

/// Offers on the command line, for programs and for people. Pure functions.
namespace MatchOutput {

/// Objects with the records' own field names; "foundAt" in seconds since 1970.
QJsonArray array(const QList<Match>& matches);
/// The same as one line of text.
QByteArray json(const QList<Match>& matches);
/// One Norwegian line; a record of what has sold out says so.
QString line(const Match& match);

} // namespace MatchOutput
