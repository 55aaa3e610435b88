// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The text without leading and trailing spaces and tabs; other white space stays.
inline QString trimmedBlanks(QStringView text) {
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text.toString();
}
