// SPDX-License-Identifier: MIT
#include "app/AppState.h"

#include "core/Database.h"
#include "polling/Routes.h"
#include "polling/Worker.h"
#include "sharing/OthersFinds.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// A clock or time zone that is changed shows itself within this time.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours(1);

} // namespace

AppState::AppState(Database& database, Worker& worker, OthersFinds& finds, Clock& clock)
    : m_database(database), m_worker(worker), m_finds(finds), m_clock(clock) {
    connect(&database.settings(), &Settings::changed, this, &AppState::readSettings);
    connect(&database.watchers(), &WatcherStore::changed, this, [this] {
        readWatchers();
        Q_EMIT reloaded();
    });
    connect(&database.offers(), &OfferStore::changed, this, [this] {
        readOffers();
        Q_EMIT reloaded();
    });
    connect(&worker, &Worker::roundEnded, this, &AppState::readLastPoll);
    connect(&database, &Database::conditionChanged, this, &AppState::reload);
    // At once, so that what is stored is never in neither list.
    connect(&finds, &OthersFinds::stored, this, &AppState::readOffers);
    connect(&finds, &OthersFinds::hitsChanged, this, &AppState::communityHitsChanged);
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
    const Settings& settings = m_database.settings();
    if (!m_onboarded && settings.isOn(Setting::onboarded)) {
        m_onboarded = true;
        Q_EMIT onboardedChanged();
    }
    const bool notifyOn = settings.isOn(Setting::nativeNotify);
    if (std::exchange(m_notifyOn, notifyOn) != notifyOn)
        Q_EMIT notifyOnChanged();
    const double minutes = settings.number(Setting::pollIntervalMin);
    if (std::exchange(m_pollIntervalMin, minutes) != minutes)
        Q_EMIT pollIntervalMinChanged();
}

void AppState::setNotifyOn(bool on) {
    if (!m_database.settings().set(Setting::nativeNotify, on))
        Q_EMIT notifyOnChanged();
}

void AppState::setPollIntervalMin(double minutes) {
    if (!m_database.settings().set(Setting::pollIntervalMin, minutes))
        Q_EMIT pollIntervalMinChanged();
}

int AppState::newToday() const {
    // The start of the day is looked up once; asking for the date of every find is slow.
    const QDateTime midnight = m_clock.today().startOfDay();
    const Instant start = instantFromSeconds(static_cast<double>(midnight.toSecsSinceEpoch()));
    const Instant end = instantFromSeconds(
        static_cast<double>(m_clock.today().addDays(1).startOfDay().toSecsSinceEpoch()));
    return static_cast<int>(
        std::count_if(m_matches.begin(), m_matches.end(), [start, end](const Hit& hit) {
            const auto* match = std::get_if<Match>(&hit);
            return match && match->foundAt >= start && match->foundAt < end;
        }));
}

std::optional<Direction> AppState::direction(const Match& match) const {
    const auto watcher = m_origins.find(match.searchId);
    if (watcher == m_origins.end() || !watcher->isRoundTrip)
        return std::nullopt;
    return Routes::isWayOut(match.route(), watcher->codes) ? Direction::out : Direction::home;
}

void AppState::reload() {
    readSettings();
    readWatchers();
    readOffers();
    readLastPoll();
    noteStorage();
    Q_EMIT reloaded();
}

void AppState::readWatchers() {
    setSearches(m_database.watchers().listSearches());
}

void AppState::readOffers() {
    setMatches(m_database.offers().recentMatches(Match::mostShown));
    const auto counts = m_database.offers().activeMatchCounts();
    if (std::exchange(m_matchCounts, counts) != counts)
        Q_EMIT matchCountsChanged();
}

void AppState::readLastPoll() {
    const auto lastPoll = Worker::loadSummary(m_database.safekeeping());
    if (std::exchange(m_lastPoll, lastPoll) != lastPoll)
        Q_EMIT lastPollChanged();
}

void AppState::noteStorage() {
    const QString problem = m_database.problem().value_or(QString());
    const QString notice = m_database.notice().value_or(QString());
    const bool isProblemNew = std::exchange(m_storageProblem, problem) != problem;
    const bool isNoticeNew = std::exchange(m_storageNotice, notice) != notice;
    if (isProblemNew || isNoticeNew)
        Q_EMIT storageChanged();
}

void AppState::dismissStorageNotice() {
    m_database.dismissNotice();
}

bool AppState::addSearchAndRun(const Search& search) {
    if (m_database.watchers().addSearch(search) == 0)
        return false;
    m_worker.pollOnce();
    return true;
}

void AppState::finishOnboarding() {
    m_database.settings().set(Setting::onboarded, true);
    // Also where that could not be stored.
    if (!std::exchange(m_onboarded, true))
        Q_EMIT onboardedChanged();
}

const QList<Match>& AppState::communityHits() const {
    return m_finds.hits();
}

QCoro::Task<> AppState::refreshCommunity() {
    return m_finds.refresh();
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

void AppState::setMatches(QList<Hit> matches) {
    if (m_matches == matches)
        return;
    m_matches = std::move(matches);
    Q_EMIT matchesChanged();
}
