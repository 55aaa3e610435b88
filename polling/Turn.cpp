// SPDX-License-Identifier: MIT
#include "polling/Turn.h"

#include <algorithm>

Turn::Turn(Legs::All legs, qint64 cursor) {
    plan(std::move(legs), cursor);
}

void Turn::plan(Legs::All legs, qint64 cursor) {
    m_legs = std::move(legs);
    m_start = m_legs.size() > 0 ? std::max<qint64>(cursor, 0) % m_legs.size() : 0;
    m_selected = Legs::slice(m_legs, m_start);
    m_next = 0;
    skipTaken();
}

void Turn::beginAt(const Leg& leg) {
    const qsizetype at = m_selected.indexOf(leg);
    // A rotation begins there by itself.
    if (at > 0 && rotationTotal() == 0)
        m_selected = m_selected.mid(at);
}

void Turn::skipTaken() {
    while (m_next < m_selected.size() && m_taken.contains(m_selected[m_next]))
        ++m_next;
}

std::optional<Leg> Turn::peek() const {
    if (m_next == m_selected.size())
        return std::nullopt;
    return m_selected[m_next];
}

std::optional<Leg> Turn::next() {
    const auto leg = peek();
    if (leg) {
        m_taken.insert(*leg);
        skipTaken();
    }
    return leg;
}

int Turn::size() const {
    const auto left = std::count_if(m_selected.begin() + m_next, m_selected.end(),
                                    [this](const Leg& leg) { return !m_taken.contains(leg); });
    return taken() + static_cast<int>(left);
}

int Turn::rotationTotal() const {
    return m_legs.size() > Legs::perRound ? static_cast<int>(m_legs.size()) : 0;
}

std::optional<qint64> Turn::cursor() const {
    if (rotationTotal() == 0)
        return std::nullopt;
    return (m_start + m_next) % m_legs.size();
}
