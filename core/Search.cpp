// SPDX-License-Identifier: MIT
#include "core/Search.h"

#include "core/Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString Search::displayName() const {
    return name.isEmpty() ? origin + u" → "_s + destination : name;
}

bool Search::isRoundTrip() const {
    return returnDateFrom.isValid() || returnDateTo.isValid();
}

bool Search::isPast(QDate today) const {
    // The day before all others where it is invalid.
    const auto isOver = [today](QDate from, QDate to) {
        return from.isValid() && std::max(from, to) < today;
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
