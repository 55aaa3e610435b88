// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>

#include <optional>

/// The form that finds have on their way between hunters. Pure functions.
namespace CommunityFind {

/// All fifteen members; "foundAt" in seconds since 1970.
QJsonObject toJson(const Match& match);

/// What a stranger sent, as far as it can be used; absent without the texts "key", "cabin" and
/// "route". Texts are cut to a sane length and lose control characters, numbers out of range read
/// as 0, and nothing was found later than `now`.
std::optional<Match> fromJson(const QJsonObject& object, Instant now);

/// The objects of a downloaded answer, in its order; absent for any text that is none.
std::optional<QList<QJsonObject>> objects(const QByteArray& answer);

/// Those of the user's `stored` offers that others had found and that have sold out since: the
/// service was asked for their route, and does not have them although they cannot have expired.
QList<Match> gone(const QList<Match>& stored, const QList<Match>& answer, const QStringList& asked,
                  Instant now);

/// What an offer is called among hunters: its fare key, "#" and its cabin.
QString identity(const Match& match);

} // namespace CommunityFind
