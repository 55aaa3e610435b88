// SPDX-License-Identifier: MIT
#include "polling/Resume.h"

#include "core/DateFmt.h"

#include <QStringList>

using namespace Qt::StringLiterals;

QString Resume::toText() const {
    QStringList words{QString::number(watcher)};
    if (leg)
        words << leg->route.origin << leg->route.destination << DateFmt::iso(leg->date)
              << (leg->flow == Flow::award ? u"award"_s : u"points"_s);
    return words.join(u' ');
}

std::optional<Resume> Resume::fromText(const QString& text) {
    const QStringList words = text.split(u' ');
    bool isNumber = false;
    Resume resume;
    resume.watcher = words[0].toLongLong(&isNumber);
    if (!isNumber || (words.size() != 1 && words.size() != 5))
        return std::nullopt;
    if (words.size() == 1)
        return resume;
    const auto date = DateFmt::parseIso(words[3]);
    if (!date || (words[4] != u"award" && words[4] != u"points"))
        return std::nullopt;
    resume.leg =
        Leg{{words[1], words[2]}, *date, words[4] == u"award" ? Flow::award : Flow::points};
    return resume;
}
