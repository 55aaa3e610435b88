// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Outcome.h"

#include <utility>

/// Decides from the outcomes of one watcher's legs when the session is to be taken for dead: after
/// three looks without any answer before them that tell nothing or that it is over, or after two
/// in a row that tell it is over. It decides once.
class Strikes {
public:
    /// The next outcome; true when it decides.
    bool decide(Outcome::Kind kind) {
        using Kind = Outcome::Kind;
        if (kind == Kind::answer)
            m_hasAnswer = true;
        if (kind == Kind::silent || kind == Kind::signedOut)
            ++m_strikes;
        m_signedOutInARow = kind == Kind::signedOut ? m_signedOutInARow + 1 : 0;
        const bool isStrike = kind == Kind::silent || kind == Kind::signedOut;
        const bool isDead =
            isStrike && ((m_strikes >= 3 && !m_hasAnswer) || m_signedOutInARow >= 2);
        return isDead && !std::exchange(m_hasDecided, true);
    }

private:
    int m_strikes = 0;
    int m_signedOutInARow = 0;
    bool m_hasAnswer = false;
    bool m_hasDecided = false;
};
