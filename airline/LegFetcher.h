// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Leg.h"
#include "airline/Outcome.h"
#include "airline/SASLoginStatus.h"

#include <QCoroTask>

#include <functional>
#include <optional>

/// Who looks up fares for the poll worker: between `prepare` and `rest`, one leg at a time.
class LegFetcher {
public:
    /// What keeps it from looking for a while.
    enum class Aside {
        /// The sign-in window is open; told every second.
        waitsForSignIn,
        renewsSession,
    };
    using Progress = std::function<void(Aside)>;

    virtual ~LegFetcher() = default;

    virtual SASLoginStatus loginStatus() const = 0;
    /// Until when the site has asked to be left alone; absent when it may be asked.
    virtual std::optional<Instant> refusedUntil() const = 0;
    /// Confirms or renews the session; afterwards `loginStatus` tells whether it lives. The answer
    /// is what became of the last look, absent when there was none to make or it was cut short.
    virtual QCoro::Task<std::optional<Outcome::Kind>> verifyLogin() = 0;
    virtual bool isVerifying() const = 0;
    /// Gets ready for the legs of one watcher: waits until nobody signs in, and renews a session
    /// that has grown old.
    virtual QCoro::Task<> prepare(Progress progress) = 0;
    /// Looks one leg up, and tries to renew the session when that is the trouble. Absent when the
    /// user has opened the sign-in window.
    virtual QCoro::Task<std::optional<Outcome>> fetchLeg(Leg leg, Progress progress) = 0;
    /// Nothing will be looked up for a while.
    virtual void rest() = 0;
};
