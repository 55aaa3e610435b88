// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

/// Offers on the command line, for programs and for people. Pure functions.
namespace MatchOutput {

/// The records' own field names; "foundAt" in seconds since 1970.
QJsonObject object(const Match& match);
/// The same members; what such a record knows nothing of is empty or 0.
QJsonObject object(const SoldOut& record);
/// A list of them as one line of text.
QByteArray json(const QList<Hit>& hits);
/// One Norwegian line; a record of what has sold out says so.
QString line(const Match& match);
QString line(const SoldOut& record);
QString line(const Hit& hit);

} // namespace MatchOutput
