// SPDX-License-Identifier: MIT
#pragma once

#include "core/Search.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>

/// Numbers and times as they are written in Norwegian, whatever the system's language.
namespace Norwegian {

inline const QLocale& locale() {
    static const QLocale norwegian(QLocale::NorwegianBokmal, QLocale::Norway);
    return norwegian;
}

/// With grouped digits.
inline QString number(qsizetype number) {
    return locale().toString(static_cast<qlonglong>(number));
}

/// Such as "14:05", in the user's time zone.
inline QString time(Instant instant) {
    const auto at = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSince1970(instant)));
    return locale().toString(at.time(), QLocale::ShortFormat);
}

} // namespace Norwegian

/// Watchers that take part in rounds.
inline qsizetype enabledCount(const QList<Search>& searches) {
    return std::count_if(searches.begin(), searches.end(),
                         [](const Search& search) { return search.enabled; });
}
