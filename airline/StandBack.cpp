// SPDX-License-Identifier: MIT
#include "airline/StandBack.h"

#include "airline/RetryAfter.h"
#include "core/Norwegian.h"
#include "core/Safekeeping.h"
#include "core/TDLog.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds shortestPause = 1min;
constexpr std::chrono::seconds firstPause = 15min;
constexpr std::chrono::seconds longestPause = 4h;

double number(const std::optional<QString>& text) {
    const double value = text.value_or(QString()).toDouble();
    return std::isfinite(value) ? value : 0;
}

/// Rounded up, so that nobody is told a time that has passed.
QString timeOfDay(Instant instant) {
    const double minutes = std::ceil(std::round(secondsSince1970(instant)) / 60);
    return Norwegian::time(instantFromSeconds(minutes * 60));
}

} // namespace

StandBack::StandBack(Safekeeping& kept, Clock& clock) : m_kept(kept), m_clock(clock) {
    const double longestSeconds = static_cast<double>(longestPause.count());
    m_ownPause = std::chrono::seconds(
        static_cast<qint64>(std::clamp(number(kept.get(Kept::refusedPause)), 0.0, longestSeconds)));
    // A clock that was set back meanwhile must not make it longer than it ever was.
    const double left = std::min(
        number(kept.get(Kept::refusedUntil)) - secondsSince1970(clock.now()), longestSeconds);
    if (left > 0)
        begin(std::chrono::seconds(static_cast<qint64>(std::ceil(left))));
}

StandBack::~StandBack() = default;

std::optional<Instant> StandBack::until() const {
    if (!m_end)
        return std::nullopt;
    return m_clock.now() + (*m_end - m_clock.ticks());
}

void StandBack::begin(std::chrono::seconds pause) {
    m_end = m_clock.ticks() + pause;
    m_timer = m_clock.after(pause, [this] { end(); });
}

void StandBack::end() {
    m_timer.reset();
    m_end.reset();
    store();
    Q_EMIT changed();
}

void StandBack::store() {
    const auto instant = until();
    m_kept.set(
        {{Kept::refusedUntil, QString::number(instant ? secondsSince1970(*instant) : 0, 'f', 0)},
         {Kept::refusedPause, QString::number(m_ownPause.count())}});
}

void StandBack::refuse(const QString& header, int status) {
    auto pause = retryAfter(header, m_clock.now());
    if (pause) {
        pause = std::clamp(*pause, shortestPause, longestPause);
    } else {
        m_ownPause = m_ownPause == 0s ? firstPause : std::min(m_ownPause * 2, longestPause);
        pause = m_ownPause;
    }
    begin(*pause);
    store();
    TDLog::note(u"sas: ber oss vente (%1) — ingen oppslag foer %2"_s.arg(QString::number(status),
                                                                         timeOfDay(*until())));
    Q_EMIT changed();
}

void StandBack::answered() {
    if (m_ownPause == 0s && !m_end)
        return;
    m_ownPause = 0s;
    end();
}

void StandBack::lift() {
    if (!m_end)
        return;
    TDLog::note(u"sas: brukeren vil proeve naa"_s);
    end();
}

QString StandBack::text(Instant until) {
    return u"SAS ber oss vente til "_s + timeOfDay(until);
}
