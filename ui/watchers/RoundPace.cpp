// SPDX-License-Identifier: MIT
#include "ui/watchers/RoundPace.h"

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int fewestToTell = 3;

} // namespace

void RoundPace::note(const QList<int>& planned, int watcher, int lookup, Ticks at) {
    if (watcher < 0 || watcher >= planned.size())
        return;
    m_planned = planned;
    const bool isNews = watcher != m_watcher || lookup != m_lookup;
    if (isNews && m_began) {
        ++m_done;
        m_taken += at - *m_began;
    }
    m_began.reset();
    if (isNews && lookup > 0)
        m_began = at;
    m_watcher = watcher;
    m_lookup = lookup;
}

int RoundPace::before() const {
    return std::accumulate(m_planned.begin(), m_planned.begin() + m_watcher, 0);
}

int RoundPace::all() const {
    return std::accumulate(m_planned.begin(), m_planned.end(), 0);
}

double RoundPace::fraction() const {
    const int total = all();
    return total == 0 ? 0 : static_cast<double>(before() + m_lookup) / total;
}

std::optional<Ticks> RoundPace::left() const {
    if (m_done < fewestToTell)
        return std::nullopt;
    const int begun = before() + std::max(m_lookup - 1, 0);
    return m_taken / m_done * (all() - begun);
}

int steadyMinutes(std::optional<int> shown, Ticks left) {
    const double minutes = left.count() / 60;
    // Half a minute would be right; a quarter more keeps it still at the border.
    const double slack = std::max(0.75, 0.1 * shown.value_or(0));
    if (shown && std::abs(minutes - *shown) < slack)
        return *shown;
    return static_cast<int>(std::lround(minutes));
}

QString timeLeftText(int minutes) {
    if (minutes < 1)
        return u"under 1 min igjen"_s;
    if (minutes < 90)
        return u"ca. %1 min igjen"_s.arg(minutes);
    return u"ca. %1 t igjen"_s.arg((minutes + 30) / 60);
}
