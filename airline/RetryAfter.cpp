// SPDX-License-Identifier: MIT
#include "airline/RetryAfter.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds longestAsked = 365 * 24h;

} // namespace

std::optional<std::chrono::seconds> retryAfter(const QString& text, Instant now) {
    const QString value = text.trimmed();
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (!value.isEmpty() && std::all_of(value.begin(), value.end(), isDigit)) {
        bool fits = false;
        const qint64 seconds = value.toLongLong(&fits);
        return fits ? std::min(std::chrono::seconds(seconds), longestAsked) : longestAsked;
    }
    // The form that servers must write; the two older ones are read as no date.
    QDateTime date = QLocale::c().toDateTime(value, u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s);
    if (!date.isValid())
        return std::nullopt;
    date.setTimeZone(QTimeZone::utc());
    const double left = static_cast<double>(date.toSecsSinceEpoch()) - secondsSince1970(now);
    return std::chrono::seconds(
        static_cast<qint64>(std::clamp(left, 0.0, static_cast<double>(longestAsked.count()))));
}
