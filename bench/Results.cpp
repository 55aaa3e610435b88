// SPDX-License-Identifier: MIT
#include "bench/Results.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString table(const QList<Result>& results) {
    qsizetype subjects = 0;
    qsizetype measures = 0;
    for (const Result& result : results) {
        subjects = std::max(subjects, result.subject.size());
        measures = std::max(measures, result.measured.size());
    }
    QString text;
    for (const Result& result : results)
        text += u"%1  %2  goal %3  %4\n"_s.arg(
            result.subject.leftJustified(subjects), result.measured.rightJustified(measures),
            result.goal.leftJustified(8), result.reached ? u"reached"_s : u"MISSED"_s);
    return text;
}
