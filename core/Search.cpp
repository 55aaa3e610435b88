// SPDX-License-Identifier: MIT
#include "core/Search.h"

#include "core/DateFmt.h"
#include "core/Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString Search::displayName() const {
    return name.isEmpty() ? origin + u" → "_s + destination : name;
}

bool Search::isRoundTrip() const {
    return !returnDateFrom.isEmpty() || !returnDateTo.isEmpty();
}

bool Search::isPast(QDate today) const {
    const auto isOver = [today](const QString& from, const QString& to) {
        const auto first = DateFmt::parseIso(from);
        const auto last = to.isEmpty() ? first : DateFmt::parseIso(to);
        return first && last && std::max(*first, *last) < today;
    };
    return isOver(dateFrom, dateTo) && (!isRoundTrip() || isOver(returnDateFrom, returnDateTo));
}

QStringList Search::codes(const QString& text) {
    QStringList codes;
    for (const QString& piece : text.split(u',', Qt::SkipEmptyParts)) {
        const QString code = trimmedBlanks(piece).toUpper();
        if (!code.isEmpty())
            codes.append(code);
    }
    return codes;
}

QList<Search> enabledOf(QList<Search> searches) {
    searches.removeIf([](const Search& search) { return !search.enabled; });
    return searches;
}
