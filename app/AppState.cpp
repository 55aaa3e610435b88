// SPDX-License-Identifier: MIT
#include "app/AppState.h"

#include "core/Database.h"
#include "polling/Community.h"
#include "polling/CommunityFind.h"
#include "polling/Matching.h"
#include "polling/Notifier.h"
#include "polling/Routes.h"
#include "polling/Worker.h"

#include <QDateTime>
#include <QPointer>
#include <QSet>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostMatches = 2000;
constexpr double usualIntervalMinutes = 10;
constexpr std::chrono::duration<double> freshness{30 * 60};
/// A clock or time zone that is changed shows itself within this time.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours(1);
/// Strangers' finds that are announced at once; the others wait for the next refresh.
constexpr qsizetype mostFreshAtOnce = 20;
/// Finds compared with the watchers in one turn of the event loop.
constexpr qsizetype findsPerTurn = 20;

/// Where a find of a stranger belongs once it is stored.
Match asStored(Match hit) {
    hit.searchId = Match::communitySearchId;
    return hit;
}

} // namespace

AppState::AppState(Database& database, Worker& worker, Community& community, Notifier& notifier,
                   Clock& clock)
    : m_database(database)
    , m_worker(worker)
    , m_community(community)
    , m_notifier(notifier)
    , m_clock(clock) {
    connect(&worker, &Worker::stored, this, &AppState::reload);
    database.forgetTravelledCommunityFinds();
    readSettings();
    reload();
    followDay();
}

/// What is "today" and what is past changes at midnight, whether anything is checked or not.
void AppState::followDay() {
    m_day = m_clock.today();
    const double midnight = static_cast<double>(m_day.addDays(1).startOfDay().toMSecsSinceEpoch());
    const double left = midnight - secondsSince1970(m_clock.now()) * 1000;
    const std::chrono::milliseconds wait(static_cast<qint64>(std::max(1000.0, std::ceil(left))));
    m_dayTimer = m_clock.after(std::min(wait, longestWait), [this] {
        if (m_clock.today() != m_day)
            reload();
        followDay();
    });
}

void AppState::readSettings() {
    // Whoever has been welcomed in this run is not welcomed again.
    if (!m_onboarded && m_database.isOn(u"onboarded"_s, false)) {
        m_onboarded = true;
        Q_EMIT onboardedChanged();
    }
    setNotifyOn(m_database.isOn(u"native_notify"_s, true));
    setPollIntervalMin(
        Worker::intervalMinutes(m_database.get(u"poll_interval_min"_s), usualIntervalMinutes));
}

void AppState::setNotifyOn(bool on) {
    if (std::exchange(m_notifyOn, on) != on)
        Q_EMIT notifyOnChanged();
}

void AppState::setPollIntervalMin(double minutes) {
    if (std::exchange(m_pollIntervalMin, minutes) != minutes)
        Q_EMIT pollIntervalMinChanged();
}

int AppState::newToday() const {
    // The start of the day is looked up once; asking for the date of every find is slow.
    const QDateTime midnight = m_clock.today().startOfDay();
    const Instant start = instantFromSeconds(static_cast<double>(midnight.toSecsSinceEpoch()));
    const Instant end = instantFromSeconds(
        static_cast<double>(m_clock.today().addDays(1).startOfDay().toSecsSinceEpoch()));
    return static_cast<int>(
        std::count_if(m_matches.begin(), m_matches.end(), [start, end](const Match& match) {
            return !match.soldOut && match.foundAt >= start && match.foundAt < end;
        }));
}

QStringList AppState::watchedRoutes() const {
    return Routes::watched(enabledOf(m_searches));
}

std::optional<QString> AppState::direction(const Match& match) const {
    if (match.soldOut)
        return std::nullopt;
    const auto watcher = m_origins.find(match.searchId);
    if (watcher == m_origins.end() || !watcher->isRoundTrip)
        return std::nullopt;
    return Routes::isWayOut(match.route, watcher->codes) ? u"Utreise"_s : u"Hjemreise"_s;
}

void AppState::reload() {
    setSearches(m_database.listSearches());
    setMatches(m_database.recentMatches(mostMatches));
    const auto counts = m_database.activeMatchCounts();
    if (std::exchange(m_matchCounts, counts) != counts)
        Q_EMIT matchCountsChanged();
    const auto lastPoll = Worker::loadSummary(m_database);
    if (std::exchange(m_lastPoll, lastPoll) != lastPoll)
        Q_EMIT lastPollChanged();
    noteStorage();
    Q_EMIT reloaded();
}

void AppState::noteStorage() {
    const QString problem = m_database.problem().value_or(QString());
    const QString notice = m_database.notice().value_or(QString());
    const bool isProblemNew = std::exchange(m_storageProblem, problem) != problem;
    const bool isNoticeNew = std::exchange(m_storageNotice, notice) != notice;
    // They could not be read before, or those of a copy count from now on.
    if ((isProblemNew && problem.isEmpty()) || (isNoticeNew && !notice.isEmpty()))
        readSettings();
    if (isProblemNew || isNoticeNew)
        Q_EMIT storageChanged();
}

void AppState::dismissStorageNotice() {
    m_database.dismissNotice();
    noteStorage();
}

void AppState::addSearchAndRun(const Search& search) {
    m_database.addSearch(search);
    reload();
    m_worker.pollOnce();
}

void AppState::finishOnboarding() {
    m_database.set(u"onboarded"_s, u"1"_s);
    if (!std::exchange(m_onboarded, true))
        Q_EMIT onboardedChanged();
    noteStorage();
}

QCoro::Task<> AppState::refreshCommunity() {
    const QPointer self(this);
    // An older answer that comes later than a newer one says nothing any more.
    const int number = ++m_refreshes;
    const QStringList routes = watchedRoutes();
    const auto answer = co_await m_community.fetchHits(routes);
    if (!self || number != m_refreshes)
        co_return;
    QList<Match> theirs = answer ? answer->hits : QList<Match>();
    QList<Match> hits = co_await concerning(std::move(theirs));
    if (!self || number != m_refreshes)
        co_return;
    // Sharing may have been switched off meanwhile.
    if (!m_community.isSharing()) {
        setCommunityHits({});
        co_return;
    }
    if (answer)
        removeGone(*answer, routes.first(std::min(routes.size(), Community::mostRoutes)));
    setCommunityHits(std::move(hits));
    notifyFreshCommunityHits();
}

/// What others have found and then sold out is no longer offered.
void AppState::removeGone(const FoundByOthers& answer, const QStringList& asked) {
    const auto service = m_community.base();
    if (std::exchange(m_service, service) != service)
        m_served.clear();
    const auto gone =
        answer.isWhole ? CommunityFind::gone(m_matches, answer.hits, asked, m_served, m_clock.now())
                       : QList<Match>();
    noteServed(answer.hits);
    if (gone.isEmpty())
        return;
    m_database.transaction([&] {
        for (const Match& match : gone) {
            m_served.remove(CommunityFind::identity(match));
            m_database.deleteMatch(match.id);
        }
    });
    reload();
}

/// What is neither served nor stored any more cannot be missed, and is forgotten.
void AppState::noteServed(const QList<Match>& hits) {
    QSet<QString> stored;
    for (const Match& match : std::as_const(m_matches))
        stored.insert(CommunityFind::identity(match));
    m_served.intersect(stored);
    for (const Match& hit : hits)
        m_served.insert(CommunityFind::identity(hit));
}

/// Those that are what an enabled watcher asks for, in their order.
QCoro::Task<QList<Match>> AppState::concerning(QList<Match> hits) const {
    const QList<Search> active = enabledOf(m_searches);
    QList<Match> result;
    for (qsizetype i = 0; i < hits.size(); ++i) {
        if (Matching::matchesAWatcher(hits[i], active))
            result.append(std::move(hits[i]));
        if (i % findsPerTurn == findsPerTurn - 1)
            co_await nextTurn();
    }
    co_return result;
}

/// First on the disk, then said: what was announced is never announced again.
void AppState::notifyFreshCommunityHits() {
    const auto seen = m_database.seenCabins(Match::communitySearchId);
    const Instant oldest = m_clock.now() - freshness;
    QList<Match> fresh;
    QSet<QString> taken;
    for (const Match& hit : std::as_const(m_communityHits)) {
        const QString key = CommunityFind::identity(hit);
        if (fresh.size() < mostFreshAtOnce && hit.foundAt > oldest && !seen.contains(key) &&
            !taken.contains(key)) {
            taken.insert(key);
            fresh.append(hit);
        }
    }
    // The user's own finds come back from the service, and are news to nobody even when they have
    // been cleared from the list.
    for (auto watcher = m_searches.cbegin(); watcher != m_searches.cend() && !fresh.isEmpty();
         ++watcher) {
        const auto own = m_database.seenCabins(watcher->id);
        fresh.removeIf([&own](const Match& hit) {
            const auto row = own.find(hit.key);
            return row != own.end() && row->cabins.contains(hit.cabin);
        });
    }
    if (fresh.isEmpty())
        return;
    const bool isStored = m_database.transaction([&] {
        for (Match& hit : fresh) {
            m_database.upsertSeen(Match::communitySearchId, CommunityFind::identity(hit),
                                  {hit.cabin}, hit.route);
            hit.id = m_database.recordMatch(asStored(hit), Database::Telling::isDue);
        }
    });
    if (!isStored)
        return;
    for (const Match& hit : std::as_const(fresh)) {
        m_notifier.notifyCommunityFare(hit);
        Q_EMIT communityFound(hit);
    }
    reload();
    setCommunityHits(m_communityHits);
}

void AppState::setSearches(QList<Search> searches) {
    if (m_searches == searches)
        return;
    m_searches = std::move(searches);
    m_origins.clear();
    for (const Search& watcher : std::as_const(m_searches))
        m_origins.insert(watcher.id, {watcher.isRoundTrip(), Search::codes(watcher.origin)});
    Q_EMIT searchesChanged();
}

void AppState::setMatches(QList<Match> matches) {
    if (m_matches == matches)
        return;
    m_matches = std::move(matches);
    Q_EMIT matchesChanged();
}

/// Leaves out what is among the user's own.
void AppState::setCommunityHits(QList<Match> hits) {
    if (!hits.isEmpty()) {
        QSet<QString> own;
        for (const Match& match : std::as_const(m_matches))
            own.insert(CommunityFind::identity(match));
        hits.removeIf(
            [&own](const Match& hit) { return own.contains(CommunityFind::identity(hit)); });
    }
    if (m_communityHits == hits)
        return;
    m_communityHits = std::move(hits);
    Q_EMIT communityHitsChanged();
}
