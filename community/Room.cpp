// SPDX-License-Identifier: MIT
#include "community/Room.h"

#include <algorithm>
#include <utility>

namespace community {

void Room::take(std::size_t bytes, std::function<void()> proceed) {
    if (bytes == 0) {
        proceed();
        return;
    }
    m_line.push_back({bytes, std::move(proceed)});
    serve();
}

void Room::giveBack(std::size_t bytes) {
    m_taken -= bytes;
    m_leaving -= std::min(m_leaving, bytes);
    serve();
}

void Room::serve() {
    // Whoever proceeds may take and give back: the loop below sees to it, without recursion.
    if (std::exchange(m_isServing, true))
        return;
    while (!m_line.empty() && m_taken + m_line.front().bytes <= m_most) {
        const Wish wish = std::move(m_line.front());
        m_line.pop_front();
        m_taken += wish.bytes;
        wish.proceed();
    }
    while (!m_line.empty() && m_taken - m_leaving + m_line.front().bytes > m_most) {
        const std::size_t leaving = m_evict();
        if (leaving == 0)
            break;
        m_leaving += leaving;
    }
    m_isServing = false;
}

} // namespace community
