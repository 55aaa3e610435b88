// SPDX-License-Identifier: MIT
#pragma once

#include "airline/FetchedLegs.h"
#include "airline/SASLoginStatus.h"

#include <QCoroTask>

#include <functional>

/// Who looks up fares for the poll worker.
class LegFetcher {
public:
    /// Asked before every date; true ends the batch.
    using AbortQuestion = std::function<bool()>;
    /// Told a label and a date: what is being fetched, or why it waits (with an empty date).
    using Progress = std::function<void(const QString& label, const QString& date)>;

    /// The label of a batch that waits for the sign-in window to close.
    static QString waitingLabel() { return QStringLiteral("venter på innlogging"); }

    virtual ~LegFetcher() = default;

    virtual SASLoginStatus loginStatus() const = 0;
    /// The site could not be reached when it was last asked, and is not known to be back. What the
    /// session is like cannot be told from that.
    virtual bool isSiteUnreachable() const = 0;
    /// Confirms or renews the session; afterwards `loginStatus` tells whether it lives.
    virtual QCoro::Task<> verifyLogin() = 0;
    /// Looks up every date of every group, in order; `award` selects the flow that also prices
    /// partner flights. Never fails: it returns what it has when it is cut short.
    virtual QCoro::Task<FetchedLegs> fetchLegs(QList<LegGroup> legs, bool award,
                                               AbortQuestion shouldAbort, Progress progress) = 0;
};
