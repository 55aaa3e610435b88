// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Fare.h"
#include "airline/Leg.h"
#include "airline/Site.h"
#include "core/Cabin.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

/// What is known of the airline's booking site: its addresses and the rules around them. Pure
/// functions; the parsers of its answers are in OfferParser.h.
namespace SAS {

/// The airline's hubs.
const QStringList& hubs();
/// Long-haul destinations that, without partner flights, are searched from the hub.
const QSet<QString>& hubAwardDests();

/// What a search for `wished` looks at: the hub instead of the origin for long-haul destinations,
/// unless partner flights count.
Route searchedRoute(const Route& wished, bool includePartners);

/// The ordinary points-search page of a route on a date; empty when a code or the date is missing.
QString bookingURL(const Site& site, const Route& route, QDate date);
/// The page that starts the identity provider's sign-in in Norwegian and comes back to the start
/// page.
QString loginURL(const Site& site);
/// The award-flow page of a route on a date.
QString awardURL(const Site& site, const Route& route, QDate date);
/// The one of the two that a leg is looked up on.
QString pageOf(const Site& site, const Leg& leg);

/// Whether a captured request of the ordinary offer endpoint asks for this route and date. `url`
/// may be relative.
bool offersURLMatches(const QString& url, const Route& route, QDate date);
/// The same for the award endpoint.
bool awardURLMatches(const QString& url, const Route& route, QDate date);
/// Whether it belongs to the leg, in its flow.
bool isRequestOf(const Leg& leg, const QString& url);

/// The cabins among `wanted` that have at least `minSeats` (and at least one) seats, with their
/// seats; none when the fare has more than `maxStops` stops.
CabinNumbers matchingCabins(const Fare& fare, CabinSet wanted, int minSeats, int maxStops);

/// The dates from `from` to `to`, ascending, at most `cap` of those from `earliest` on. None when
/// `from` is invalid; only `from` when `to` is invalid or lies before it.
QList<QDate> expandDates(QDate from, QDate to, QDate earliest, int cap);

/// Travel time in minutes, from two instants such as "2025-03-01T10:15:00.000Z", else from a text
/// of hours and minutes such as "13:05". 0 when unknown, or not between 1 minute and 48 hours.
int durationMinutes(const std::optional<QString>& startGmt, const std::optional<QString>& endGmt,
                    const std::optional<QString>& connection);

} // namespace SAS
