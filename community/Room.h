// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <functional>

namespace community {

/// The memory that bodies and answers on their way share. Who finds no room stands in line, and
/// somebody who holds some is sent away.
class Room {
public:
    /// `evict` sends one holder away, and returns what it will give back soon; 0 when there is
    /// nobody to send.
    Room(std::size_t most, std::function<std::size_t()> evict)
        : m_most(most), m_evict(std::move(evict)) {}

    /// Calls `proceed` at once or later, when there are `bytes`, which is at most all of the room.
    void take(std::size_t bytes, std::function<void()> proceed);
    void giveBack(std::size_t bytes);
    /// Lets in who fits, and makes room for the next. To be called now and then too, for with time
    /// there may be somebody to send away.
    void serve();
    /// Forgets who stands in line.
    void close() { m_line.clear(); }

    std::size_t most() const { return m_most; }

private:
    struct Wish {
        std::size_t bytes;
        std::function<void()> proceed;
    };

    std::size_t m_most;
    std::function<std::size_t()> m_evict;
    std::size_t m_taken = 0;
    std::size_t m_leaving = 0; // of that, what those sent away have yet to give back
    bool m_isServing = false;
    std::deque<Wish> m_line;
};

} // namespace community
