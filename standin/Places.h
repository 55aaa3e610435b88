// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace standin {

/// An airport the stand-in site knows.
struct Place {
    const char* code;        ///< IATA code, upper case
    const char16_t* city;    ///< city as the site spells it (Norwegian)
    const char* zone;        ///< IANA time zone
    double latitude;         ///< degrees north, to about a kilometre
    double longitude;        ///< degrees east
    bool isIntercontinental; ///< reached by long-haul aircraft from Scandinavia
};

/// The place with this IATA code, or nullptr when the site does not know it.
const Place* findPlace(const QString& code);

/// City name as the site spells it; empty when the code is unknown.
QString cityOf(const QString& code);

/// Great-circle distance in kilometres; 1500 when either code is unknown.
double kilometresBetween(const QString& from, const QString& to);

} // namespace standin
