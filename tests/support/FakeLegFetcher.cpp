// SPDX-License-Identifier: MIT
#include "tests/support/FakeLegFetcher.h"

#include "airline/Verdict.h"

#include <QTest>

QCoro::Task<std::optional<Outcome::Kind>> FakeLegFetcher::verifyLogin() {
    ++verifications;
    co_await nextTurn();
    if (!verified)
        QTest::qFail("nobody expected a verification", __FILE__, __LINE__);
    status = verified.value_or(status);
    if (unreachable)
        co_return Outcome::Kind::unreachable;
    co_return status.isLoggedOut() ? Outcome::Kind::signedOut : Outcome::Kind::answer;
}

QCoro::Task<> FakeLegFetcher::prepare(Progress) {
    co_await nextTurn();
}

QCoro::Task<std::optional<Outcome>> FakeLegFetcher::fetchLeg(Leg leg, Progress) {
    looked.append(leg);
    co_await nextTurn();
    if (looked.size() == heldLookup)
        co_await goOn;
    std::optional<Outcome> result = Outcome{};
    if (outcome) {
        result = outcome(leg);
        co_return result;
    }
    if (!answer)
        QTest::qFail("nobody expected a lookup", __FILE__, __LINE__);
    std::optional<QByteArray> body;
    if (answer)
        body = answer(leg.route.origin, leg.route.destination, leg.date.toString(u"yyyyMMdd"));
    if (body) {
        const Verdict::Response response{200, {}, *body};
        result = Verdict::ofResponse(response, leg, m_parser);
    } else if (unreachable) {
        result->kind = Outcome::Kind::unreachable;
    } else if (status.isLoggedOut()) {
        result->kind = Outcome::Kind::signedOut;
    }
    co_return result;
}
