// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Outcome.h"

#include <utility>

/// Decides from what becomes of looks when the session is to be taken for dead: after three of one
/// watcher's, without any answer before them, that tell nothing or that it is over, or after two in
/// a row, of whichever watchers, that tell it is over. It decides once a watcher.
class Strikes {
public:
    /// Another watcher's looks follow.
    void beginWatcher() {
        m_strikes = 0;
        m_hasAnswer = false;
        m_hasDecided = false;
    }

    /// What became of the next look; true when it decides.
    bool decide(Outcome::Kind kind) {
        using Kind = Outcome::Kind;
        m_hasAnswer = m_hasAnswer || kind == Kind::answer;
        m_signedOutInARow = kind == Kind::signedOut ? m_signedOutInARow + 1 : 0;
        if (kind != Kind::silent && kind != Kind::signedOut)
            return false;
        ++m_strikes;
        const bool isDead = (m_strikes >= 3 && !m_hasAnswer) || m_signedOutInARow >= 2;
        return isDead && !std::exchange(m_hasDecided, true);
    }

private:
    int m_strikes = 0;
    int m_signedOutInARow = 0;
    bool m_hasAnswer = false;
    bool m_hasDecided = false;
};
