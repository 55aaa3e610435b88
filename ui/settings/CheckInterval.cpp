// SPDX-License-Identifier: MIT
#include "ui/settings/CheckInterval.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

QList<double> CheckInterval::choices(double current) {
    QList<double> intervals{5, 10, 30};
    if (!intervals.contains(current))
        intervals.insert(std::upper_bound(intervals.cbegin(), intervals.cend(), current), current);
    return intervals;
}

QString CheckInterval::label(double minutes) {
    const QLocale norwegian(QLocale::NorwegianBokmal, QLocale::Norway);
    return norwegian.toString(minutes, 'f', QLocale::FloatingPointShortest) + u" min"_s;
}
