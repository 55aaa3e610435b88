// SPDX-License-Identifier: MIT
#include "polling/Announcer.h"

#include "core/Database.h"
#include "polling/Notifier.h"

Announcer::Announcer(Database& database, Notifier& notifier)
    : m_database(database), m_notifier(notifier) {}

bool Announcer::store(qint64 watcher, QList<FareNews>& news) {
    constexpr auto isDue = OfferStore::Telling::isDue;
    return m_database.transaction([&] {
        for (FareNews& one : news) {
            for (Match& match : one.found)
                match.id = m_database.offers().recordMatch(match, isDue);
            if (one.soldOut)
                one.soldOut->id = m_database.offers().recordSoldOut(*one.soldOut, isDue);
            if (one.seen)
                m_database.seen().upsertSeen(watcher, one.key, *one.seen);
        }
    });
}

QCoro::Task<> Announcer::settled() {
    co_await m_notifier.settled();
}

Announcer::Count Announcer::announce(qint64 watcher, QList<FareNews> news) {
    Count count;
    const bool isStored = store(watcher, news);
    // The desktop first: what others do with a find may take its time.
    for (FareNews& one : news) {
        for (Match& match : one.found) {
            if (!isStored)
                match.id = 0;
            ++count.found;
            m_notifier.notifyNewFare(match);
        }
        if (one.soldOut && isStored) {
            ++count.soldOut;
            m_notifier.notifySoldOut(*one.soldOut);
        }
    }
    for (const FareNews& one : std::as_const(news)) {
        for (const Match& match : one.found)
            Q_EMIT matchFound(match);
        if (one.soldOut && isStored)
            Q_EMIT soldOut(*one.soldOut);
    }
    return count;
}
