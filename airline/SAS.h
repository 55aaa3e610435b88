// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Fare.h"
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

/// The pair of codes that a search from `origin` to `destination` looks at: the hub instead of
/// the origin for long-haul destinations, unless partner flights count.
struct RoutePair {
    QString origin;
    QString destination;
    QString text() const { return origin + u'-' + destination; }
    bool operator==(const RoutePair&) const = default;
};
RoutePair searchedPair(const QString& origin, const QString& destination, bool includePartners);

/// The ordinary points-search page of one leg; `dateISO` is "yyyy-MM-dd" or "yyyyMMdd". Empty when
/// one of the three texts is.
QString bookingURL(const Site& site, const QString& origin, const QString& dest,
                   const QString& dateISO);
/// The page that starts the identity provider's sign-in in Norwegian and comes back to the start
/// page.
QString loginURL(const Site& site);
/// The award-flow page of one leg; `dateISO` is "yyyy-MM-dd".
QString awardURL(const Site& site, const QString& origin, const QString& dest,
                 const QString& dateISO);

/// Whether a captured request of the ordinary offer endpoint belongs to this leg. `url` may be
/// relative; `outDate` in either form.
bool offersURLMatches(const QString& url, const QString& origin, const QString& dest,
                      const QString& outDate);
/// The same for the award endpoint.
bool awardURLMatches(const QString& url, const QString& origin, const QString& dest,
                     const QString& outDate);

/// The cabins among `wanted` that have at least `minSeats` (and at least one) seats, with their
/// seats; none when the fare has more than `maxStops` stops.
QMap<QString, int> matchingCabins(const Fare& fare, const CabinSet& wanted, int minSeats,
                                  int maxStops);

/// The dates from `from` to `to` (both "yyyy-MM-dd"), ascending, at most `cap` of those from
/// `earliest` on. None when `from` is not a date; only `from` when `to` is not a date or lies
/// before it.
QList<QDate> expandDates(const QString& from, const QString& to, QDate earliest, int cap);

/// Travel time in minutes, from two instants such as "2025-03-01T10:15:00.000Z", else from a text
/// of hours and minutes such as "13:05". 0 when unknown, or not between 1 minute and 48 hours.
int durationMinutes(const std::optional<QString>& startGmt, const std::optional<QString>& endGmt,
                    const std::optional<QString>& connection);

} // namespace SAS
