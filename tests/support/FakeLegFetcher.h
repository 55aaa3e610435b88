// SPDX-License-Identifier: MIT
#pragma once

#include "airline/LegFetcher.h"
#include "airline/OfferParser.h"
#include "platform/OneShot.h"

#include <QList>

/// An airline of recorded answers. It answers in later turns of the event loop and fails the test
/// on a call that it was not prepared for.
class FakeLegFetcher final : public LegFetcher {
public:
    SASLoginStatus loginStatus() const override { return status; }
    std::optional<Instant> refusedUntil() const override { return refused; }
    QCoro::Task<std::optional<Outcome::Kind>> verifyLogin() override;
    bool isVerifying() const override { return verifying; }
    QCoro::Task<> prepare(Progress progress) override;
    QCoro::Task<std::optional<Outcome>> fetchLeg(Leg leg, Progress progress) override;
    void rest() override { ++rests; }

    SASLoginStatus status;
    std::optional<Instant> refused;
    bool verifying = false;
    /// What `verifyLogin` finds; a call without it fails the test.
    std::optional<SASLoginStatus> verified;
    int verifications = 0;
    /// The body for a leg, its date as "yyyyMMdd"; without one nothing comes. A lookup without this
    /// or `outcome` fails the test.
    std::function<std::optional<QByteArray>(const QString& origin, const QString& destination,
                                            const QString& date)>
        answer;
    /// What becomes of a leg; goes before `answer`.
    std::function<std::optional<Outcome>(const Leg& leg)> outcome;
    /// Pages cannot be fetched.
    bool unreachable = false;
    QList<Leg> looked;
    int rests = 0;
    /// The lookup, counted from 1, that gets no answer before `goOn`; 0 for none.
    int heldLookup = 0;
    OneShot<bool> goOn;

private:
    OfferParser m_parser{Site{}};
};
