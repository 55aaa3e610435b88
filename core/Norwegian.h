// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QDate>
#include <QString>

/// Numbers, dates and times as they are written in Norwegian, whatever the system's language is.
/// Names of days and months are our own, since locale data spells them differently from version to
/// version ("mar.", "mars").
namespace Norwegian {

/// "1 284", with a space that does not break.
QString number(qint64 number);
/// "7,5", with as many decimals as it takes.
QString decimal(double number);

/// "14:05", in the user's time zone; seconds that have begun are cut.
QString time(Instant instant);
/// "7. mar."; empty for no date, as all texts of dates are.
QString dayAndMonth(QDate date);
/// "mars 2027".
QString monthAndYear(QDate date);
/// "søndag 7. mars 2027".
QString fullDate(QDate date);
/// "man."; `day` as in Qt::DayOfWeek.
QString weekday(int day);

} // namespace Norwegian
