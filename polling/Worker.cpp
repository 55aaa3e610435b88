// SPDX-License-Identifier: MIT
#include "polling/Worker.h"

#include "core/Err.h"
#include "core/TDLog.h"
#include "polling/Notifier.h"

#include <QJsonDocument>
#include <QPointer>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto revivalPause = 1800s;
constexpr double shortestIntervalMinutes = 1.0;
/// A week: a setting beyond that is a slip of the pen.
constexpr double longestIntervalMinutes = 7 * 24 * 60;
const QString lastPollKey = u"last_poll"_s;

/// Fares compared, and news stored and announced, before everything else gets its turn: a few
/// milliseconds' worth.
constexpr int faresPerStep = 400;
constexpr int newsPerStep = 60;

const QString unreachableText =
    u"Får ikke kontakt med SAS. Sjekk nettet – Tindra prøver igjen av seg selv."_s;

QString errorOf(const Search& watcher, const QString& message) {
    return u"søk %1: %2"_s.arg(QString::number(watcher.id), message);
}

} // namespace

Worker::Worker(Database& database, LegFetcher& fetcher, Notifier& notifier, Clock& clock, Site site)
    : m_database(database)
    , m_fetcher(fetcher)
    , m_notifier(notifier)
    , m_clock(clock)
    , m_parser(std::move(site))
    , m_pause(clock) {}

void Worker::startTimer(double intervalMinutes) {
    stopTimer();
    loop(intervalMinutes);
}

void Worker::stopTimer() {
    ++m_loopNumber;
    m_pause.interrupt();
}

double Worker::intervalMinutes(const std::optional<QString>& stored, double otherwise) {
    bool isNumber = false;
    const double minutes = stored.value_or(QString()).toDouble(&isNumber);
    return std::clamp(isNumber && std::isfinite(minutes) ? minutes : otherwise,
                      shortestIntervalMinutes, longestIntervalMinutes);
}

QCoro::Task<> Worker::loop(double intervalMinutes) {
    const QPointer self(this);
    const int number = m_loopNumber;
    while (number == m_loopNumber) {
        co_await pollOnce();
        if (!self || number != m_loopNumber)
            co_return;
        const double minutes =
            Worker::intervalMinutes(m_database.get(u"poll_interval_min"_s), intervalMinutes);
        const bool slept =
            co_await m_pause.start(std::chrono::duration_cast<std::chrono::milliseconds>(
                std::chrono::duration<double, std::ratio<60>>(minutes)));
        if (!slept || !self)
            co_return;
    }
}

QString Worker::signedOutText() {
    return u"Ikke innlogget hos SAS — søkene får ingen data. Logg inn via Innstillinger."_s;
}

QCoro::Task<PollSummary> Worker::pollOnce() {
    PollSummary summary;
    summary.at = m_clock.now();
    if (std::exchange(m_busy, true))
        co_return summary;
    const QPointer self(this);
    // Signed out there is no round, but storage has to work all the same.
    if (m_database.recover())
        Q_EMIT stored();
    const bool alive = co_await revive();
    if (!self)
        co_return summary;
    if (alive)
        summary = co_await round();
    if (self)
        m_busy = false;
    co_return summary;
}

/// False while the session is dead.
QCoro::Task<bool> Worker::revive() {
    if (!m_fetcher.loginStatus().isLoggedOut())
        co_return true;
    if (m_lastRevivalAttempt && m_clock.ticks() - *m_lastRevivalAttempt < revivalPause)
        co_return false;
    m_lastRevivalAttempt = m_clock.ticks();
    TDLog::note(u"worker: utlogget — proever samlet re-innlogging (neste forsoek om 30 min)"_s);
    LegFetcher& fetcher = m_fetcher;
    const QPointer self(this);
    co_await fetcher.verifyLogin();
    // An attempt without a network was none.
    if (self && fetcher.isSiteUnreachable())
        m_lastRevivalAttempt.reset();
    co_return !fetcher.loginStatus().isLoggedOut();
}

QCoro::Task<PollSummary> Worker::round() {
    const QPointer self(this);
    PollSummary summary;
    summary.at = m_clock.now();
    QList<Match> found;
    m_isRunning = true;
    QList<Search> watchers = m_database.listSearches();
    watchers.removeIf([](const Search& watcher) { return !watcher.enabled; });
    const int total = static_cast<int>(watchers.size());
    if (total == 0) {
        m_isRunning = false;
        setStatus({});
        Q_EMIT stored();
        co_return summary;
    }
    m_progress = {0, total};
    for (int i = 0; i < total; ++i) {
        const Search& watcher = watchers.at(i);
        if (!stillActive(watcher.id))
            continue;
        ++summary.searches;
        m_progress = {i, total};
        m_lookupDone = 0;
        setStatus(u"Sjekker %1…"_s.arg(watcher.displayName()));
        const auto errors = summary.errors.size();
        co_await checkWatcher(watcher, summary, found);
        if (!self)
            co_return summary;
        // What had come before the contact was lost has been used; the round tells all the same.
        if (m_fetcher.isSiteUnreachable() && summary.errors.size() == errors)
            summary.errors.append(errorOf(watcher, unreachableText));
        if (summary.errors.size() > errors && (m_fetcher.isSiteUnreachable() || isSignedOut()))
            break;
    }
    m_progress = {total, total};
    m_database.set(
        lastPollKey,
        QString::fromUtf8(QJsonDocument(summary.toJson()).toJson(QJsonDocument::Compact)));
    m_isRunning = false;
    setStatus({});
    Q_EMIT roundEnded(summary, found);
    Q_EMIT stored();
    co_return summary;
}

QCoro::Task<> Worker::checkWatcher(Search watcher, PollSummary& summary, QList<Match>& found) {
    const QPointer self(this);
    Lookup lookup = co_await fetchSASFares(watcher);
    if (!self)
        co_return;
    if (lookup.error) {
        summary.errors.append(errorOf(watcher, *lookup.error));
        m_database.markChecked(watcher.id, 0);
        co_return;
    }
    if (!stillActive(watcher.id))
        co_return;
    summary.fetched += static_cast<int>(lookup.fares.size());
    co_await matchFares(watcher, std::move(lookup), summary, found);
}

QCoro::Task<Worker::Lookup> Worker::fetchSASFares(Search watcher) {
    const QPointer self(this);
    Lookup lookup;
    QList<Leg> legs;
    try {
        legs = takeTurn(watcher, Legs::ofWatcher(watcher));
    } catch (const Err& error) {
        lookup.error = error.message;
        co_return lookup;
    }
    m_lookupTotal = static_cast<int>(legs.size());
    Q_EMIT changed();

    const QList<LegGroup> groups = Legs::grouped(legs);
    const LegFetcher::AbortQuestion abort = [self, id = watcher.id] {
        return self && !self->stillActive(id);
    };
    const LegFetcher::Progress progress =
        [self, name = watcher.displayName()](const QString& label, const QString& date) {
            if (self)
                self->noteProgress(name, label, date);
        };
    auto fetched = co_await m_fetcher.fetchLegs(groups, watcher.includePartners, abort, progress);
    if (!self)
        co_return lookup;

    qsizetype noData = 0;
    co_await readBodies(std::move(fetched), watcher.includePartners, lookup, noData);
    if (!self || !lookup.fares.isEmpty())
        co_return lookup;
    if (m_fetcher.isSiteUnreachable())
        lookup.error = unreachableText;
    else if (isSignedOut())
        lookup.error = signedOutText();
    else if (noData > 0 && noData == legs.size())
        lookup.error = u"SAS ga ingen data — sjekk EuroBonus-innloggingen (Innstillinger)."_s;
    co_return lookup;
}

/// The legs of this round; the cursor remembers where the next one goes on.
QList<Leg> Worker::takeTurn(const Search& watcher, const Legs::All& legs) {
    m_rotationTotal = 0;
    if (legs.size() <= Legs::perRound)
        return Legs::slice(legs, 0);
    const QString key = u"lookup_cursor_%1"_s.arg(watcher.id);
    const qint64 cursor = std::max<qint64>(m_database.get(key).value_or(QString()).toLongLong(), 0);
    const qint64 start = cursor % legs.size();
    m_database.set(key, QString::number((start + Legs::perRound) % legs.size()));
    m_rotationTotal = static_cast<int>(legs.size());
    return Legs::slice(legs, start);
}

QCoro::Task<> Worker::readBodies(FetchedLegs fetched, bool award, Lookup& lookup,
                                 qsizetype& noData) {
    const QPointer self(this);
    QList<Leg> answered;
    for (auto leg = fetched.begin(); leg != fetched.end(); ++leg) {
        const QStringList codes = leg.key().split(u'-', Qt::SkipEmptyParts);
        if (codes.size() != 2)
            continue;
        for (auto date = leg->begin(); date != leg->end(); ++date) {
            const QByteArray bytes = std::exchange(*date, std::nullopt).value_or(QByteArray());
            const auto fares = award ? m_parser.parseAwardOffers(bytes, codes[0], codes[1])
                                     : m_parser.parseOffers(bytes, codes[0], codes[1]);
            if (!fares) {
                ++noData;
                continue;
            }
            lookup.fares.append(*fares);
            // A date that gave no data was not looked at: nothing has sold out because of it.
            answered.append({codes[0], codes[1], date.key()});
            co_await nextTurn();
            if (!self)
                co_return;
        }
    }
    lookup.visited = Legs::visited(answered);
}

QCoro::Task<> Worker::matchFares(Search watcher, Lookup lookup, PollSummary& summary,
                                 QList<Match>& found) {
    const QPointer self(this);
    FareComparison comparison(watcher, std::move(lookup.visited), m_database.seenCabins(watcher.id),
                              m_clock.now());
    auto fare = lookup.fares.cbegin();
    bool done = false;
    while (!done) {
        // A watcher that is deleted between two steps must not get rows again.
        if (!stillActive(watcher.id))
            co_return;
        QList<FareNews> news;
        for (int compared = 0; !done && compared < faresPerStep && news.size() < newsPerStep;
             ++compared) {
            const bool hasFare = fare != lookup.fares.cend();
            auto next = hasFare ? comparison.add(*fare++) : comparison.nextGone();
            done = !hasFare && !next;
            if (next)
                news.append(std::move(*next));
        }
        storeAndAnnounce(watcher, std::move(news), summary, found);
        co_await nextTurn();
        if (!self)
            co_return;
    }
    summary.matches += comparison.satisfied();
    m_database.markChecked(watcher.id, comparison.satisfied());
}

/// First on the disk, then said: what was announced is never announced again after a crash. When
/// the disk takes nothing, a new seat is worth saying all the same; that one has sold out would be
/// said again in every round, so it waits.
void Worker::storeAndAnnounce(const Search& watcher, QList<FareNews> news, PollSummary& summary,
                              QList<Match>& found) {
    if (news.isEmpty())
        return;
    const bool isStored = m_database.transaction([&] {
        for (FareNews& one : news) {
            for (Match& match : one.found)
                match.id = m_database.recordMatch(match);
            if (one.soldOut)
                one.soldOut->id = m_database.recordMatch(*one.soldOut);
            if (one.seen)
                m_database.upsertSeen(watcher.id, one.key, one.seen->cabins, one.seen->label);
        }
    });
    for (FareNews& one : news) {
        for (Match& match : one.found) {
            if (!isStored)
                match.id = 0;
            ++summary.newAlerts;
            m_notifier.notifyNewFare(match);
            found.append(match);
            Q_EMIT matchFound(match);
        }
        if (one.soldOut && isStored) {
            ++summary.soldOut;
            m_notifier.notifySoldOut(one.soldOut->route, one.gone);
            Q_EMIT soldOut(*one.soldOut, one.key, one.gone);
        }
    }
}

void Worker::noteProgress(const QString& displayName, const QString& label, const QString& date) {
    if (label == LegFetcher::waitingLabel()) {
        setStatus(u"Venter til du er ferdig innlogget…"_s);
        return;
    }
    if (!date.isEmpty())
        ++m_lookupDone;
    setStatus(u"Sjekker %1 — %2"_s.arg(displayName, label));
}

bool Worker::stillActive(qint64 id) {
    const QList<Search> searches = m_database.listSearches();
    return std::any_of(searches.begin(), searches.end(),
                       [id](const Search& search) { return search.id == id && search.enabled; });
}

void Worker::setStatus(const QString& text) {
    m_statusText = text;
    Q_EMIT changed();
}

std::optional<PollSummary> Worker::loadSummary(Database& database) {
    const auto text = database.get(lastPollKey);
    return text ? PollSummary::fromJson(*text) : std::nullopt;
}
