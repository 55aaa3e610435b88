// SPDX-License-Identifier: MIT
#include "core/FareKey.h"

#include "core/DateFmt.h"

namespace {

constexpr qsizetype dateLength = 10;
constexpr qsizetype codeLength = 3;

} // namespace

std::strong_ordering FareKey::operator<=>(const FareKey& other) const {
    if (date != other.date)
        return date.toJulianDay() <=> other.date.toJulianDay();
    if (const auto order = route <=> other.route; order != 0)
        return order;
    return flights.compare(other.flights) <=> 0;
}

QString FareKey::text() const {
    QString text;
    text.reserve(dateLength + 1 + 2 * (codeLength + 1) + flights.size());
    if (date.isValid())
        text.append(DateFmt::iso(date)).append(u'-');
    if (!route.origin.isEmpty() || !route.destination.isEmpty())
        text.append(route.origin).append(u'-').append(route.destination).append(u'-');
    return text.append(flights);
}

FareKey FareKey::fromText(const QString& text) {
    FareKey key;
    qsizetype start = 0;
    if (text.size() > dateLength && text[dateLength] == u'-') {
        key.date = DateFmt::parseIso(text.first(dateLength)).value_or(QDate());
        start = key.date.isValid() ? dateLength + 1 : 0;
    }
    // Without a date only what looks like codes is taken for them.
    const qsizetype first = text.indexOf(u'-', start);
    const qsizetype second = first < 0 ? -1 : text.indexOf(u'-', first + 1);
    const bool areCodes = first - start == codeLength && second - first == codeLength + 1;
    if (second >= 0 && (start > 0 || areCodes)) {
        key.route = {text.sliced(start, first - start), text.sliced(first + 1, second - first - 1)};
        start = second + 1;
    }
    key.flights = text.sliced(start);
    return key;
}

std::optional<OfferId> OfferId::fromText(const QString& text) {
    const qsizetype mark = text.lastIndexOf(u'#');
    const auto cabin = mark < 0 ? std::nullopt : cabinFromRaw(QStringView(text).sliced(mark + 1));
    return cabin ? std::optional(OfferId{FareKey::fromText(text.first(mark)), *cabin})
                 : std::nullopt;
}
