// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>

#include <array>
#include <optional>

enum class Cabin { economy, premeco, business, first };

/// All cabins, from the back of the aircraft to the front.
inline constexpr std::array allCabins{Cabin::economy, Cabin::premeco, Cabin::business,
                                      Cabin::first};

/// The text that records, database and community service use, such as "premeco".
QString rawValue(Cabin cabin);
/// Absent for any text that is not exactly one of the four raw values.
std::optional<Cabin> cabinFromRaw(QStringView text);

/// What the user sees, such as "Premium".
QString label(Cabin cabin);
/// The label of a stored cabin text; a text that is no cabin is shown unchanged.
QString cabinLabel(const QString& text);
/// The same for several, which are joined by ",": "Business, Premium".
QString cabinLabels(const QString& texts);

/// A set of cabin raw values. It may hold texts that are no cabin, as a database can.
using CabinSet = QSet<QString>;

/// The raw values in ascending byte order, joined by ",".
QString encodeCabins(const CabinSet& cabins);
/// The reverse; empty pieces are dropped.
CabinSet decodeCabins(const QString& text);
