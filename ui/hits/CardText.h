// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"

#include <QDateTime>
#include <QString>

/// What a trip card says of an offer, in Norwegian. Pure functions.
namespace CardText {

/// In UTC.
QDateTime utc(Instant instant);
/// How long ago or when an offer was found, such as "Funnet i dag 09:13". `today` is the date of
/// `now` in the user's time zone.
QString found(Instant foundAt, Instant now, QDate today);
/// Such as "Business · 2 seter · 60 000 poeng". A price below 1 and a negative number of seats are
/// unknown and left out.
QString fare(const Match& match);
/// Such as "7t 35m · direkte".
QString duration(const Match& match);
/// What has sold out, such as "Business er ikke lenger tilgjengelig".
QString soldOut(const SoldOut& record);

/// One end of a flight.
struct Endpoint {
    /// Such as "17:40".
    QString time;
    /// Such as "EWR · 23.01".
    QString place;
    bool operator==(const Endpoint&) const = default;
};
Endpoint departure(const Match& match);
Endpoint arrival(const Match& match);
/// By how many days the date of the arrival differs from that of the departure, such as "+1" or
/// "−1"; empty when they are the same or not known.
QString dayShift(const Match& match);

/// How fresh a find is: of the last hour, of the last six hours, or older.
enum class Freshness { hour, sixHours, older };
Freshness freshness(Instant foundAt, Instant now);
enum class Border { none, fresh, soldOut };
/// `fresh` for a find of the last twelve hours.
Border border(const Hit& hit, Instant now);

} // namespace CardText
