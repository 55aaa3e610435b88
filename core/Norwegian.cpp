// SPDX-License-Identifier: MIT
#include "core/Norwegian.h"

#include <QDateTime>
#include <QLocale>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array months{u"januar",    u"februar", u"mars",     u"april",
                            u"mai",       u"juni",    u"juli",     u"august",
                            u"september", u"oktober", u"november", u"desember"};
constexpr std::array days{u"mandag", u"tirsdag", u"onsdag", u"torsdag",
                          u"fredag", u"lørdag",  u"søndag"};
constexpr qsizetype abbreviated = 3;

QString month(QDate date) {
    return QString::fromUtf16(months[static_cast<size_t>(date.month() - 1)]);
}

QString weekdayInFull(int day) {
    return QString::fromUtf16(days[static_cast<size_t>(day - 1)]);
}

/// A name that is no longer is not shortened.
QString shortened(const QString& name) {
    return name.size() > abbreviated ? name.first(abbreviated) + u'.' : name;
}

const QLocale& locale() {
    static const QLocale norwegian(QLocale::NorwegianBokmal, QLocale::Norway);
    return norwegian;
}

} // namespace

namespace Norwegian {

QString number(qint64 number) {
    return locale().toString(number);
}

QString decimal(double number) {
    return locale().toString(number, 'f', QLocale::FloatingPointShortest);
}

QString time(Instant instant) {
    const auto seconds = static_cast<qint64>(secondsSince1970(instant));
    return QDateTime::fromSecsSinceEpoch(seconds).toString(u"HH:mm"_s);
}

QString dayAndMonth(QDate date) {
    return date.isValid() ? u"%1. %2"_s.arg(QString::number(date.day()), shortened(month(date)))
                          : QString();
}

QString monthAndYear(QDate date) {
    return date.isValid() ? u"%1 %2"_s.arg(month(date), QString::number(date.year())) : QString();
}

QString fullDate(QDate date) {
    return date.isValid() ? u"%1 %2. %3"_s.arg(weekdayInFull(date.dayOfWeek()),
                                               QString::number(date.day()), monthAndYear(date))
                          : QString();
}

QString weekday(int day) {
    return shortened(weekdayInFull(day));
}

} // namespace Norwegian
