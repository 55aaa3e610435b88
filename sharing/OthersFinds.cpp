// SPDX-License-Identifier: MIT
#include "sharing/OthersFinds.h"

#include "core/Database.h"
#include "polling/Matching.h"
#include "polling/Notifier.h"
#include "polling/Routes.h"
#include "sharing/Community.h"
#include "sharing/CommunityFind.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::duration<double> freshness{30 * 60};
/// Strangers' finds that are announced at once; the others wait for the next refresh.
constexpr qsizetype mostFreshAtOnce = 20;
/// Finds compared with the watchers in one turn of the event loop.
constexpr qsizetype findsComparedPerTurn = 20;

/// Where a find of a stranger belongs once it is stored.
Match asStored(Match hit) {
    hit.searchId = Match::communitySearchId;
    return hit;
}

QSet<OfferId> offersOf(const QList<Match>& finds) {
    QSet<OfferId> result;
    for (const Match& find : finds)
        result.insert(find.offer());
    return result;
}

QSet<OfferId> offersOf(const QList<Hit>& hits) {
    QSet<OfferId> result;
    for (const Hit& hit : hits) {
        if (const auto* match = std::get_if<Match>(&hit))
            result.insert(match->offer());
    }
    return result;
}

/// Those that are what one of the watchers asks for, in their order.
QCoro::Task<QList<Match>> concerning(QList<Match> hits, QList<Search> watchers) {
    QList<Match> result;
    for (qsizetype i = 0; i < hits.size(); ++i) {
        if (Matching::matchesAWatcher(hits[i], watchers))
            result.append(std::move(hits[i]));
        if (i % findsComparedPerTurn == findsComparedPerTurn - 1)
            co_await nextTurn();
    }
    co_return result;
}

} // namespace

OthersFinds::OthersFinds(Database& database, Community& community, Notifier& notifier, Clock& clock)
    : m_database(database), m_community(community), m_notifier(notifier), m_clock(clock) {
    database.seen().forgetTravelledCommunityFinds();
}

QCoro::Task<> OthersFinds::refresh() {
    const QPointer self(this);
    // An older answer that comes later than a newer one says nothing any more.
    const int number = ++m_refreshes;
    const QList<Route> routes = Routes::watched(enabledOf(m_database.watchers().listSearches()));
    const auto answer = co_await m_community.fetchHits(routes);
    if (!self || number != m_refreshes)
        co_return;
    QList<Match> theirs = answer ? answer->hits : QList<Match>();
    const QList<Search> watchers = enabledOf(m_database.watchers().listSearches());
    QList<Match> hits = co_await concerning(std::move(theirs), watchers);
    if (!self || number != m_refreshes)
        co_return;
    // Sharing may have been switched off meanwhile.
    if (!m_community.isSharing()) {
        show({}, {});
        co_return;
    }
    QList<Hit> stored = m_database.offers().recentMatches(Match::mostShown);
    if (answer)
        removeGone(*answer, routes.first(std::min(routes.size(), Community::mostRoutes)), stored);
    const QSet<OfferId> known = offersOf(stored);
    show(std::move(hits), known);
    announceFresh(known);
}

/// Leaves out what is among the stored.
void OthersFinds::show(QList<Match> hits, const QSet<OfferId>& known) {
    hits.removeIf([&known](const Match& hit) { return known.contains(hit.offer()); });
    if (m_hits == hits)
        return;
    m_hits = std::move(hits);
    Q_EMIT hitsChanged();
}

/// What others have found and then sold out is no longer offered.
void OthersFinds::removeGone(const FoundByOthers& answer, const QList<Route>& asked,
                             QList<Hit>& hits) {
    const auto service = m_community.base();
    if (std::exchange(m_service, service) != service)
        m_served.clear();
    const auto gone = answer.isWhole
                          ? CommunityFind::gone(hits, answer.hits, asked, m_served, m_clock.now())
                          : QList<Match>();
    noteServed(answer.hits, hits);
    if (gone.isEmpty())
        return;
    m_database.transaction([&] {
        for (const Match& match : gone) {
            m_served.remove(match.offer());
            m_database.offers().deleteMatch(match.id);
        }
    });
    hits = m_database.offers().recentMatches(Match::mostShown);
    Q_EMIT stored();
}

/// What is neither served nor stored any more cannot be missed, and is forgotten.
void OthersFinds::noteServed(const QList<Match>& theirs, const QList<Hit>& hits) {
    m_served.intersect(offersOf(hits));
    m_served.unite(offersOf(theirs));
}

/// Those that are young and that nobody has told of.
QList<Match> OthersFinds::fresh() const {
    const auto seen = m_database.seen().seenOfOthers();
    const Instant oldest = m_clock.now() - freshness;
    QList<Match> result;
    QSet<OfferId> taken;
    for (const Match& hit : m_hits) {
        const OfferId offer = hit.offer();
        if (result.size() < mostFreshAtOnce && hit.foundAt > oldest && !seen.contains(offer) &&
            !taken.contains(offer)) {
            taken.insert(offer);
            result.append(hit);
        }
    }
    // The user's own finds come back from the service, and are news to nobody even when they have
    // been cleared from the list.
    const QList<Search> watchers =
        result.isEmpty() ? QList<Search>() : m_database.watchers().listSearches();
    for (const Search& watcher : watchers) {
        const auto own = m_database.seen().seenCabins(watcher.id);
        result.removeIf([&own](const Match& hit) {
            const auto row = own.find(hit.key);
            return row != own.end() && row->cabins.contains(hit.cabin);
        });
    }
    return result;
}

/// First on the disk, then said: what was announced is never announced again.
void OthersFinds::announceFresh(QSet<OfferId> known) {
    QList<Match> finds = fresh();
    if (finds.isEmpty())
        return;
    const bool isStored = m_database.transaction([&] {
        for (Match& hit : finds) {
            m_database.seen().noteSeenOfOthers(hit);
            hit.id = m_database.offers().recordMatch(asStored(hit), OfferStore::Telling::isDue);
        }
    });
    if (!isStored)
        return;
    for (const Match& hit : std::as_const(finds)) {
        m_notifier.notifyCommunityFare(hit);
        Q_EMIT found(hit);
    }
    Q_EMIT stored();
    show(m_hits, known.unite(offersOf(finds)));
}
