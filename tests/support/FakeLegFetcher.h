// SPDX-License-Identifier: MIT
#pragma once

#include "airline/LegFetcher.h"
#include "platform/OneShot.h"

#include <QList>

/// An airline of recorded answers. It answers in later turns of the event loop, asks whether to
/// stop before every date and reports progress, as the real one does, and fails the test on a call
/// that it was not prepared for.
class FakeLegFetcher final : public LegFetcher {
public:
    struct Call {
        QList<LegGroup> legs;
        bool award;
    };

    SASLoginStatus loginStatus() const override { return status; }
    bool isSiteUnreachable() const override { return unreachable; }
    QCoro::Task<> verifyLogin() override;
    QCoro::Task<FetchedLegs> fetchLegs(QList<LegGroup> legs, bool award, AbortQuestion shouldAbort,
                                       Progress progress) override;

    SASLoginStatus status;
    bool unreachable = false;
    /// What `verifyLogin` finds; a call without it fails the test.
    std::optional<SASLoginStatus> verified;
    int verifications = 0;
    /// The body of every date of every leg; a lookup without it fails the test.
    std::function<std::optional<QByteArray>(const QString& origin, const QString& destination,
                                            const QString& date)>
        answer;
    QList<Call> calls;
    /// The lookup, counted from 1, that gets no answer before `goOn`; 0 for none.
    int heldLookup = 0;
    OneShot<bool> goOn;

private:
    int m_lookups = 0;
};
