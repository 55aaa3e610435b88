// SPDX-License-Identifier: MIT
#include "core/LocalTime.h"

#include <cstdlib>

namespace {

/// The number of the two or four digits at `from`; -1 when there is another character.
int number(QStringView text, qsizetype from, qsizetype length) {
    int value = 0;
    for (const QChar digit : text.sliced(from, length)) {
        if (digit < u'0' || digit > u'9')
            return -1;
        value = value * 10 + (digit.unicode() - u'0');
    }
    return value;
}

/// "09:05" at `from`.
QTime timeAt(QStringView text, qsizetype from) {
    return text[from + 2] == u':' ? QTime(number(text, from, 2), number(text, from + 3, 2))
                                  : QTime();
}

} // namespace

QString LocalTime::text() const {
    if (!isKnown())
        return m_other;
    const auto digits = [](int value) { return QString::number(value).rightJustified(2, u'0'); };
    return digits(m_date.day()) + u'.' + digits(m_date.month()) + u' ' + digits(m_time.hour()) +
           u':' + digits(m_time.minute());
}

LocalTime LocalTime::fromAirline(const QString& text) {
    constexpr QStringView form = u"dddd-dd-ddTdd:dd";
    LocalTime result;
    const bool hasForm = text.size() >= form.size() && text[4] == u'-' && text[7] == u'-' &&
                         (text[10] == u'T' || text[10] == u' ');
    if (hasForm) {
        result.m_date = QDate(number(text, 0, 4), number(text, 5, 2), number(text, 8, 2));
        result.m_time = timeAt(text, 11);
    }
    if (!result.isKnown())
        result = LocalTime();
    if (!result.isKnown())
        result.m_other = text;
    return result;
}

LocalTime LocalTime::fromText(const QString& text, QDate reference) {
    constexpr QStringView form = u"dd.dd dd:dd";
    LocalTime result;
    const bool hasForm = text.size() == form.size() && text[2] == u'.' && text[5] == u' ';
    const QTime time = hasForm ? timeAt(text, 6) : QTime();
    if (time.isValid() && reference.isValid()) {
        for (int year = reference.year() - 1; year <= reference.year() + 1; ++year) {
            const QDate date(year, number(text, 3, 2), number(text, 0, 2));
            const auto distance = [reference](QDate one) {
                return std::abs(reference.daysTo(one));
            };
            if (date.isValid() &&
                (!result.m_date.isValid() || distance(date) < distance(result.m_date)))
                result.m_date = date;
        }
        result.m_time = time;
    }
    if (!result.isKnown()) {
        result = LocalTime();
        result.m_other = text;
    }
    return result;
}
