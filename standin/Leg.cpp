// SPDX-License-Identifier: MIT
#include "standin/Leg.h"

#include <QRegularExpression>

namespace standin {

QString Leg::key() const {
    return origin + u'-' + destination + u'-' + date.toString(u"yyyyMMdd");
}

std::optional<Leg> Leg::of(const QString& origin, const QString& destination, const QString& date) {
    static const QRegularExpression code(QStringLiteral("^[A-Z]{3}\\z"));
    Leg leg{origin.toUpper(), destination.toUpper(), QDate::fromString(date, u"yyyy-MM-dd")};
    if (!leg.date.isValid())
        leg.date = QDate::fromString(date, u"yyyyMMdd");
    if (!leg.date.isValid() || !code.match(leg.origin).hasMatch() ||
        !code.match(leg.destination).hasMatch())
        return std::nullopt;
    return leg;
}

std::optional<Leg> Leg::fromKey(const QString& key) {
    const QStringList parts = key.split(u'-');
    return parts.size() == 3 ? of(parts[0], parts[1], parts[2]) : std::nullopt;
}

} // namespace standin
