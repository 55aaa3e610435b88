// SPDX-License-Identifier: MIT
#include "ui/search/DateText.h"

#include "core/DateFmt.h"
#include "core/Norwegian.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// From one 29 February to the next it can take eight years.
constexpr int yearsToTheNextLeapDay = 8;

QDate nextOccurrence(int day, int month, QDate today) {
    for (int year = today.year(); year <= today.year() + yearsToTheNextLeapDay; ++year) {
        const QDate date(year, month, day);
        if (date.isValid() && date >= today)
            return date;
    }
    return {};
}

} // namespace

namespace DateText {

QString window(QDate from, QDate to) {
    return Norwegian::dayAndMonth(from) + u" – "_s + Norwegian::dayAndMonth(to) + u' ' +
           QString::number(to.year());
}

QString typed(QDate date) {
    return date.toString(u"dd.MM.yyyy"_s);
}

std::optional<QDate> parse(const QString& text, QDate today) {
    static const QRegularExpression form(
        u"^(\\d{1,2})[./ -] ?(\\d{1,2})(?:[./ -] ?(\\d{4}|\\d{2}))?\\.?$"_s);
    const QString trimmed = text.trimmed();
    if (const auto date = DateFmt::parseIso(trimmed))
        return date;
    const QRegularExpressionMatch match = form.match(trimmed);
    if (!match.hasMatch())
        return std::nullopt;
    const int day = match.captured(1).toInt();
    const int month = match.captured(2).toInt();
    const QString year = match.captured(3);
    const QDate date = year.isEmpty()
                           ? nextOccurrence(day, month, today)
                           : QDate((year.size() == 2 ? 2000 : 0) + year.toInt(), month, day);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

} // namespace DateText
