// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QSet>

#include <optional>

/// The form that finds have on their way between hunters. Pure functions.
namespace CommunityFind {

/// All fifteen members; "foundAt" in seconds since 1970. Texts for display are cut to what the
/// service takes.
QJsonObject toJson(const Match& match);
/// Whether the service would take it; it refuses all that come with one that it does not.
bool isShareable(const Match& match);

/// What a stranger sent, as far as it can be used; absent without "key", "cabin" and "route", and
/// where they contradict each other. Texts are cut to a sane length and lose control characters,
/// numbers out of range and dates that are none read as 0 and empty, and nothing was found later
/// than `now`.
std::optional<Match> fromJson(const QJsonObject& object, Instant now);

/// A downloaded answer.
struct Answer {
    /// In the service's order.
    QList<QJsonObject> finds;
    /// The service does not say that it has left some out.
    bool isWhole = true;
};
/// Absent for any text that is none.
std::optional<Answer> read(const QByteArray& text);

/// Those of the user's `stored` offers that others had found and that have sold out since: the
/// service had them earlier in this run (`served`), was `asked` for their route
/// again, and gave a whole answer without them although they cannot have expired.
QList<Match> gone(const QList<Hit>& stored, const QList<Match>& answer, const QList<Route>& asked,
                  const QSet<OfferId>& served, Instant now);

} // namespace CommunityFind
