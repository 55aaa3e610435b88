// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>

#include <optional>

namespace standin {

/// One question to the site: which flights go from here to there on this day?
struct Leg {
    QString origin;      ///< IATA code, upper case
    QString destination; ///< IATA code, upper case
    QDate date;          ///< local departure date

    /// "OSL-BKK-20270301"
    QString key() const;

    /// Reads codes of three letters in any case and a date as "yyyy-MM-dd" or "yyyyMMdd"; absent
    /// when one of them is something else.
    static std::optional<Leg> of(const QString& origin, const QString& destination,
                                 const QString& date);

    /// Reads the form that key() writes.
    static std::optional<Leg> fromKey(const QString& key);

    bool operator==(const Leg&) const = default;
};

} // namespace standin
