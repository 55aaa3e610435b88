// SPDX-License-Identifier: MIT
#include "tests/support/FakeLegFetcher.h"

#include <QTest>

QCoro::Task<> FakeLegFetcher::verifyLogin() {
    ++verifications;
    co_await nextTurn();
    if (!verified)
        QTest::qFail("nobody expected a verification", __FILE__, __LINE__);
    status = verified.value_or(status);
}

QCoro::Task<FetchedLegs> FakeLegFetcher::fetchLegs(QList<LegGroup> legs, bool award,
                                                   AbortQuestion shouldAbort, Progress progress) {
    calls.append({legs, award});
    if (!answer)
        QTest::qFail("nobody expected a lookup", __FILE__, __LINE__);
    FetchedLegs fetched;
    for (const LegGroup& leg : legs) {
        FetchedDates& dates = fetched[leg.origin + u'-' + leg.destination];
        for (const QString& date : leg.dates) {
            if (shouldAbort())
                co_return fetched;
            progress(leg.origin + u'→' + leg.destination, date);
            co_await nextTurn();
            if (++m_lookups == heldLookup)
                co_await goOn;
            dates.insert(date, answer ? answer(leg.origin, leg.destination, date) : std::nullopt);
        }
    }
    co_return fetched;
}
