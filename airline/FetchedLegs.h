// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

/// Bodies above this many bytes are not read.
inline constexpr qsizetype largestBody = 16 * 1024 * 1024;

/// Dates of one route that are looked up in a row.
struct LegGroup {
    QString origin;
    QString destination;
    /// "yyyyMMdd".
    QStringList dates;
    bool operator==(const LegGroup&) const = default;
};

/// The captured response bodies in UTF-8, by date as given; absent where a date gave none.
using FetchedDates = QMap<QString, std::optional<QByteArray>>;
/// The same by leg key, `origin`-`destination` as given; a route that comes twice has the dates of
/// both.
using FetchedLegs = QMap<QString, FetchedDates>;
