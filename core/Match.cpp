// SPDX-License-Identifier: MIT
#include "core/Match.h"

using namespace Qt::StringLiterals;

QString Match::places() const {
    const auto name = [](const QString& city, const QString& code) {
        const QString& place = city.isEmpty() ? code : city;
        return place.isEmpty() ? u"?"_s : place;
    };
    return name(fromCity, route().origin) + u" → "_s + name(toCity, route().destination);
}

std::optional<QString> Match::durationText() const {
    if (durationMinutes <= 0)
        return std::nullopt;
    const int hours = durationMinutes / 60;
    const int minutes = durationMinutes % 60;
    if (hours == 0)
        return u"%1m"_s.arg(minutes);
    if (minutes == 0)
        return u"%1t"_s.arg(hours);
    return u"%1t %2m"_s.arg(hours).arg(minutes);
}
