// SPDX-License-Identifier: MIT
#include "core/Search.h"

#include "core/Text.h"

using namespace Qt::StringLiterals;

QString Search::displayName() const {
    return name.isEmpty() ? origin + u" → "_s + destination : name;
}

bool Search::isRoundTrip() const {
    return !returnDateFrom.isEmpty() || !returnDateTo.isEmpty();
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
