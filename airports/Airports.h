// SPDX-License-Identifier: MIT
#pragma once

#include "airports/Region.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <utility>

/// The built-in catalogue of airports. It is read once, when first asked, from files compiled into
/// the program, and never changes. Codes are IATA codes of three upper-case letters.
namespace Airports {

struct Airport {
    QString code;
    /// The city's display name: Norwegian in the curated rows, else English or local.
    QString city;

    bool operator==(const Airport&) const = default;
};

inline size_t qHash(const Airport& airport, size_t seed = 0) {
    return qHashMulti(seed, airport.code, airport.city);
}

/// The hand-picked airports, the nearest to a Norwegian traveller first.
const QList<Airport>& kuraterte();
/// The rest of the world, generated from a public list of IATA airports, in ascending code order.
const QList<Airport>& genererte();
/// The curated airports, then the generated ones; no code twice. This is the catalogue's order.
const QList<Airport>& all();
/// Every airport of `all` under its code.
const QHash<QString, Airport>& byCode();
/// The codes of each region except `other`, in the regions' order; no code in two of them.
const QList<std::pair<Region, QSet<QString>>>& regionSets();
/// English city names, by code, of airports whose city has a Norwegian or local name here.
const QHash<QString, QStringList>& englishNames();

/// The region of an airport code in any case; `other` for one in no region.
Region region(const QString& of);

/// The name under which a code's neighbouring airports are grouped: that of its metropolitan area,
/// else its city. A code outside the catalogue gives itself in upper case.
QString metro(const QString& code);

/// Whether a stored city name plausibly belongs to an airport code in any case: one contains the
/// other, folded, in the catalogue's spelling or the English one. Also true when nothing can be
/// compared: an empty city, the code in place of the city, or a code outside the catalogue.
bool cityConsistent(const QString& code, const QString& city);

/// At most `limit` airports for a text being typed: exact code first, then cities that begin with
/// it, codes that begin with it, and cities that contain it, each in the catalogue's order. Case
/// and accents do not count. Empty for a text of fewer than two characters.
QList<Airport> search(const QString& query, int limit);

} // namespace Airports
