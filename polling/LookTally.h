// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Outcome.h"
#include "platform/Clock.h"

#include <QString>

#include <optional>

/// What became of the looks of one watcher in one round, and how that is told.
class LookTally {
public:
    void note(const Outcome& outcome);

    /// What the user is told while nobody is signed in.
    static QString signedOutText();

    int answers() const { return m_answers; }
    /// What went wrong, in Norwegian, without a full account; absent when nothing did.
    /// `refusedUntil` as of LegFetcher; `isSignedOut` that the session is known to be dead.
    std::optional<QString> trouble(std::optional<Instant> refusedUntil, bool isSignedOut) const;
    /// How much of `planned` looks got no answer, with the reason; absent when all did.
    std::optional<QString> gaps(int planned, const QString& reason) const;

private:
    int m_answers = 0;
    /// The miss that tells most, and its status.
    std::optional<Outcome::Kind> m_worst;
    int m_status = 0;
};
