// SPDX-License-Identifier: MIT
#pragma once

#include "airports/Airports.h"

#include <QString>

/// What an airport field does with the list of codes in it, such as "OSL, BGO".
namespace CodeList {

/// The piece being typed: the last one of a list (`multi`), else the whole text; without spaces and
/// tabs round it.
QString activeToken(const QString& text, bool multi);
/// At most six airports for the piece being typed; none for fewer than two characters and for a
/// complete code.
QList<Airports::Airport> suggestions(const QString& token);
/// The text once `code` has taken the place of the piece being typed.
QString picked(const QString& text, const QString& code, bool multi);
/// The cities of all known codes in the text, in its order: "Oslo · Bergen".
QString cityNames(const QString& text);

struct Ends {
    QString origin;
    QString destination;
    bool operator==(const Ends&) const = default;
};
/// The journey the other way: from the first destination, to the old origins and the other
/// destinations.
Ends swapped(const Ends& ends);

} // namespace CodeList
