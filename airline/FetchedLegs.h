// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

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
/// The same by leg key, `origin`-`destination` as given.
using FetchedLegs = QMap<QString, FetchedDates>;
