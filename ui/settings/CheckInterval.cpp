// SPDX-License-Identifier: MIT
#include "ui/settings/CheckInterval.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

QList<double> CheckInterval::choices(double stored) {
    constexpr double least = 1;
    constexpr double most = 7 * 24 * 60;
    QList<double> intervals{5, 10, 30};
    if (stored >= least && stored <= most && !intervals.contains(stored))
        intervals.insert(std::upper_bound(intervals.cbegin(), intervals.cend(), stored), stored);
    return intervals;
}

QString CheckInterval::label(double minutes) {
    const QLocale norwegian(QLocale::NorwegianBokmal, QLocale::Norway);
    return norwegian.toString(minutes, 'f', QLocale::FloatingPointShortest) + u" min"_s;
}

QString CheckInterval::toStore(double minutes) {
    const QString text = QString::number(minutes, 'f', QLocale::FloatingPointShortest);
    return text.contains(u'.') ? text : text + u".0"_s;
}
