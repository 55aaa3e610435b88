// SPDX-License-Identifier: MIT
#include "core/DateFmt.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// Year, month and day with `separator` between. A round writes and reads thousands of dates, for
/// which Qt's general formats take ten times as long.
QString digits(QDate date, QStringView separator) {
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day);
    QString text;
    if (!date.isValid() || year < 0 || year > 9999)
        return text;
    const auto append = [&text](int value, int places) {
        for (int divisor = places == 4 ? 1000 : 10; divisor > 0; divisor /= 10)
            text.append(QChar(u'0' + value / divisor % 10));
    };
    text.reserve(10);
    append(year, 4);
    text.append(separator);
    append(month, 2);
    text.append(separator);
    append(day, 2);
    return text;
}

} // namespace

namespace DateFmt {

QString iso(QDate date) {
    return digits(date, u"-");
}

QString compact(QDate date) {
    return digits(date, {});
}

std::optional<QDate> parseIso(QStringView text) {
    constexpr QStringView form = u"dddd-dd-dd";
    if (text.size() != form.size())
        return std::nullopt;
    std::array<int, 3> numbers{};
    size_t number = 0;
    for (qsizetype i = 0; i < form.size(); ++i) {
        const bool isDigit = text[i] >= u'0' && text[i] <= u'9';
        if (form[i] == u'd' ? !isDigit : text[i] != u'-')
            return std::nullopt;
        if (isDigit)
            numbers[number] = numbers[number] * 10 + (text[i].unicode() - u'0');
        else
            ++number;
    }
    const QDate date(numbers[0], numbers[1], numbers[2]);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

QDate dateFromIso(QStringView text) {
    return parseIso(text).value_or(QDate());
}

QString ago(std::optional<Instant> instant, Instant now) {
    if (!instant)
        return u"ikke sjekket enda"_s;
    const double seconds = (now - *instant).count();
    if (seconds < 60)
        return u"akkurat nå"_s;
    const auto whole = static_cast<qint64>(seconds);
    if (seconds < 3600)
        return u"%1 min siden"_s.arg(whole / 60);
    if (seconds < 86400)
        return u"%1 t siden"_s.arg(whole / 3600);
    return u"%1 d siden"_s.arg(whole / 86400);
}

QString shortDate(QDate date) {
    return date.toString(u"dd.MM.yy"_s);
}

} // namespace DateFmt
