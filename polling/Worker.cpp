// SPDX-License-Identifier: MIT
#include "polling/Worker.h"

#include "airline/StandBack.h"
#include "airline/Standing.h"
#include "core/Err.h"
#include "core/TDLog.h"
#include "polling/Notifier.h"

#include <QJsonDocument>
#include <QPointer>
#include <QRandomGenerator>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Kind = Outcome::Kind;

constexpr auto revivalPause = 1800s;
constexpr auto resumePatience = 30min;
constexpr double jitter = 0.1;

/// News stored and announced before everything else gets its turn: a few milliseconds' worth.
constexpr qsizetype newsPerStep = 60;

QString ofWatcher(const Search& watcher, const QString& message) {
    return u"søk %1: %2"_s.arg(QString::number(watcher.id), message);
}

/// What of a watcher decides which fares it wants.
Search criteria(Search watcher) {
    watcher.name.clear();
    watcher.lastChecked.reset();
    watcher.lastFound = 0;
    return watcher;
}

/// Outcomes after which the next look would only be the same again.
bool endsRound(const Outcome& outcome, bool isSignedOut) {
    return outcome.kind == Kind::refused || outcome.kind == Kind::unreachable ||
           (outcome.kind == Kind::signedOut && isSignedOut);
}

} // namespace

Worker::Worker(Database& database, LegFetcher& fetcher, Notifier& notifier, Clock& clock)
    : m_database(database)
    , m_fetcher(fetcher)
    , m_clock(clock)
    , m_announcer(database, notifier)
    , m_pause(clock) {
    m_resume = Resume::fromText(database.safekeeping().get(Kept::resumeRound).value_or(QString()));
    connect(&m_announcer, &Announcer::matchFound, this, &Worker::matchFound);
    connect(&m_announcer, &Announcer::soldOut, this, &Worker::soldOut);
}

void Worker::startTimer(double intervalMinutes) {
    stopTimer();
    loop(intervalMinutes);
}

void Worker::stopTimer() {
    ++m_loopNumber;
    m_pause.interrupt();
}

std::chrono::milliseconds Worker::jittered(std::chrono::milliseconds interval, double chance) {
    const double factor = 1 - jitter + 2 * jitter * std::clamp(chance, 0.0, 1.0);
    const auto changed = std::llround(static_cast<double>(interval.count()) * factor);
    return std::max<std::chrono::milliseconds>(std::chrono::milliseconds(changed), 1min);
}

QCoro::Task<> Worker::loop(double intervalMinutes) {
    const QPointer self(this);
    const int number = m_loopNumber;
    while (number == m_loopNumber) {
        co_await pollOnce();
        if (!self || number != m_loopNumber)
            co_return;
        const bool slept = co_await m_pause.start(untilNextRound(intervalMinutes));
        if (!slept || !self)
            co_return;
    }
}

std::chrono::milliseconds Worker::untilNextRound(double intervalMinutes) const {
    const double minutes = m_database.settings().number(Setting::pollIntervalMin, intervalMinutes);
    const auto interval = jittered(std::chrono::duration_cast<std::chrono::milliseconds>(
                                       std::chrono::duration<double, std::ratio<60>>(minutes)),
                                   QRandomGenerator::global()->generateDouble());
    // When the airline may be asked again, it is, within the interval.
    const auto refused = m_fetcher.refusedUntil();
    if (!refused)
        return interval;
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(*refused - m_clock.now()) + 1s;
    return std::clamp<std::chrono::milliseconds>(left, 1s, interval);
}

std::optional<QString> Worker::whyNoRound() const {
    const auto until = refusedUntil();
    switch (standing(m_fetcher.loginStatus().state, until.has_value(), false)) {
    case Standing::signedOut:
        return LookTally::signedOutText();
    case Standing::refused:
        return StandBack::text(*until) + u'.';
    default:
        return std::nullopt;
    }
}

QCoro::Task<PollSummary> Worker::pollOnce() {
    PollSummary summary;
    summary.at = m_clock.now();
    if (std::exchange(m_busy, true))
        co_return summary;
    const QPointer self(this);
    // Whether there is a round or not, storage has to work.
    m_database.recover();
    bool mayLook = !m_fetcher.refusedUntil();
    if (mayLook)
        mayLook = co_await revive();
    if (self && mayLook)
        summary = co_await round();
    if (!self)
        co_return summary;
    m_busy = false;
    Q_EMIT idle(summary);
    co_return summary;
}

QCoro::Task<PollSummary> Worker::joinRound() {
    if (m_busy) {
        const OneShot<PollSummary> end;
        const QMetaObject::Connection ended = connect(
            this, &Worker::idle, this, [end](const PollSummary& summary) { end.resolve(summary); });
        const QMetaObject::Connection gone =
            connect(this, &QObject::destroyed, [end] { end.resolve(PollSummary()); });
        PollSummary summary = co_await end;
        disconnect(ended);
        disconnect(gone);
        co_return summary;
    }
    PollSummary summary = co_await pollOnce();
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
    const auto kind = co_await fetcher.verifyLogin();
    // An attempt that learned nothing was none.
    const bool isDecided = kind == Kind::answer || kind == Kind::signedOut || kind == Kind::silent;
    if (self && !isDecided)
        m_lastRevivalAttempt.reset();
    co_return !fetcher.loginStatus().isLoggedOut();
}

QCoro::Task<PollSummary> Worker::round() {
    const QPointer self(this);
    Round round;
    round.summary.at = m_clock.now();
    m_isRunning = true;
    forgetOldCut();
    auto watcher = nextWatcher(round);
    if (!watcher) {
        m_isRunning = false;
        setStatus({});
        co_return round.summary;
    }
    while (watcher && !round.isCut) {
        round.begun.insert(watcher->id);
        co_await checkWatcher(*watcher, round);
        if (!self)
            co_return round.summary;
        watcher = nextWatcher(round);
    }
    if (!round.isCut)
        setResume(std::nullopt);
    m_fetcher.rest();
    m_progress = {m_progress.total, m_progress.total};
    m_database.safekeeping().set(
        Kept::lastPoll,
        QString::fromUtf8(QJsonDocument(round.summary.toJson()).toJson(QJsonDocument::Compact)));
    m_isRunning = false;
    setStatus({});
    Q_EMIT roundEnded(round.summary);
    co_return round.summary;
}

/// Those that are new since the round began have a turn too. A round after one that was cut short
/// is the rest of that one.
QList<Search> Worker::waiting(const Round& round) {
    QList<Search> watchers = activeWatchers();
    watchers.removeIf([this, &round](const Search& one) {
        return round.begun.contains(one.id) || (m_resume && one.id < m_resume->watcher);
    });
    return watchers;
}

std::optional<Search> Worker::nextWatcher(const Round& round) {
    const auto watchers = waiting(round);
    return watchers.isEmpty() ? std::nullopt : std::optional(watchers.first());
}

void Worker::setResume(const std::optional<Resume>& resume) {
    if (m_resume == resume)
        return;
    m_resume = resume;
    // Only a site that refuses is worth remembering for: others do not come back to the same leg.
    const bool isKept = resume && !resume->end;
    const QString text = isKept ? resume->toText() : QString();
    Safekeeping& kept = m_database.safekeeping();
    if (kept.get(Kept::resumeRound).value_or(QString()) != text)
        kept.set(Kept::resumeRound, text);
}

void Worker::forgetOldCut() {
    const auto watchers = activeWatchers();
    const bool isOver = m_resume && (watchers.isEmpty() || watchers.last().id < m_resume->watcher ||
                                     (m_resume->end && m_clock.ticks() > *m_resume->end));
    if (isOver)
        setResume(std::nullopt);
}

QCoro::Task<> Worker::checkWatcher(Search watcher, Round& round) {
    const QPointer self(this);
    const int begun = static_cast<int>(round.begun.size());
    const QList<Search> ahead = QList<Search>{watcher} + waiting(round);
    m_progress = {begun - 1, begun - 1 + static_cast<int>(ahead.size())};
    m_lookupDone = 0;
    m_rotationTotal = 0;
    showPlan(ahead, round);
    setStatus(u"Sjekker %1…"_s.arg(watcher.displayName()));
    auto visit = this->visit(watcher, round);
    if (!visit)
        co_return;
    ++round.summary.searches;
    showSize(visit->turn);
    Q_EMIT changed();
    co_await lookAtLegs(*visit, round);
    if (self)
        endVisit(*visit, round);
}

/// Absent when there is nothing to look at.
std::optional<Worker::Visit> Worker::visit(const Search& watcher, Round& round) {
    Legs::All legs;
    try {
        legs = Legs::ofWatcher(watcher, m_clock.today());
    } catch (const Err& error) {
        ++round.summary.searches;
        round.summary.errors.append(ofWatcher(watcher, error.message));
        m_database.watchers().markChecked(watcher.id, 0);
        return std::nullopt;
    }
    // All its dates have passed, which its card says.
    if (legs.size() == 0)
        return std::nullopt;
    Visit visit{watcher,
                Turn(std::move(legs), storedCursor(watcher.id)),
                FareComparison(watcher, m_database.seen().seenCabins(watcher.id)),
                {}};
    if (m_resume && m_resume->watcher == watcher.id && m_resume->leg)
        visit.turn.beginAt(*m_resume->leg);
    return visit;
}

QCoro::Task<> Worker::lookAtLegs(Visit& visit, Round& round) {
    const QPointer self(this);
    while (followEdits(visit)) {
        const auto leg = visit.turn.peek();
        if (!leg)
            co_return;
        auto shared = round.answers.find(*leg);
        // What is waited for here may take hours, and the watcher may be another one afterwards.
        if (!shared && !std::exchange(visit.isPrepared, true)) {
            const LegFetcher::Progress progress = progressOf(visit.watcher);
            co_await m_fetcher.prepare(progress);
            if (!self)
                co_return;
            continue;
        }
        showLeg(visit, *leg);
        std::optional<Outcome> outcome;
        if (shared) {
            outcome = Outcome{Kind::answer, 0, {}, std::move(*shared)};
            visit.tally.note(*outcome);
            co_await nextTurn();
        } else {
            outcome = co_await lookAt(*leg, visit, round);
        }
        if (!self || round.isCut)
            co_return;
        visit.turn.next();
        // It may have been edited, paused or deleted meanwhile.
        if (!followEdits(visit))
            co_return;
        if (outcome && outcome->kind == Kind::answer && visit.turn.wants(*leg)) {
            co_await take(std::move(outcome->fares), *leg, visit, round);
            if (!self || !followEdits(visit))
                co_return;
        }
        // Only now: what a crash keeps from being stored is looked at again.
        storeCursor(visit.watcher.id, visit.turn);
    }
}

/// What became of the leg, noted; cuts the round when the next look would only be the same again.
QCoro::Task<std::optional<Outcome>> Worker::lookAt(Leg leg, Visit& visit, Round& round) {
    const QPointer self(this);
    const LegFetcher::Progress progress = progressOf(visit.watcher);
    std::optional<Outcome> outcome;
    // A verification that was waited for may have found the session dead.
    if (isSignedOut())
        outcome = Outcome{Kind::signedOut};
    else
        outcome = co_await m_fetcher.fetchLeg(leg, progress);
    if (!self)
        co_return outcome;
    if (outcome)
        visit.tally.note(*outcome);
    if (!outcome || endsRound(*outcome, isSignedOut())) {
        cut(visit, outcome, round);
    } else if (outcome->kind == Kind::answer) {
        round.hasAnswers = true;
        round.answers.offer(leg, outcome->fares, waiting(round), m_clock.today());
    }
    co_return outcome;
}

/// The next round goes on with the leg that cut this one. One that did so as the first of its round
/// must not stand in the way of the others.
void Worker::cut(const Visit& visit, const std::optional<Outcome>& outcome, Round& round) {
    round.isCut = true;
    Turn rest = visit.turn;
    if (outcome && !round.hasAnswers) {
        rest.next();
        storeCursor(visit.watcher.id, rest);
    }
    std::optional<Ticks> end;
    if (!outcome || outcome->kind != Kind::refused)
        end = m_resume && !round.hasAnswers ? m_resume->end : m_clock.ticks() + resumePatience;
    // Behind its last leg it is the next watcher's turn.
    const auto next = rest.peek();
    setResume(next ? Resume{visit.watcher.id, next, end} : Resume{visit.watcher.id + 1, {}, end});
}

/// Stores and tells what an answer says, and only then lets the next page be loaded.
QCoro::Task<> Worker::take(QList<Fare> fares, Leg leg, Visit& visit, Round& round) {
    const QPointer self(this);
    round.summary.fetched += static_cast<int>(fares.size());
    QList<FareNews> news = visit.comparison.compare(leg, fares, m_clock.now());
    for (qsizetype from = 0; from < news.size(); from += newsPerStep) {
        const auto count = m_announcer.announce(visit.watcher.id, news.mid(from, newsPerStep));
        round.summary.newAlerts += count.found;
        round.summary.soldOut += count.soldOut;
        // What comes next takes its time, and whoever died then would tell it all again.
        co_await m_announcer.settled();
        if (!self)
            co_return;
        // The screens read everything again, which is a step of its own.
        co_await nextTurn();
        if (!self || !activeWatcher(visit.watcher.id))
            co_return;
    }
    if (!news.isEmpty())
        Q_EMIT stored();
}

/// False when the watcher has been paused or deleted. From the next leg on one that was edited is
/// compared with what it asks for now.
bool Worker::followEdits(Visit& visit) {
    const auto now = activeWatcher(visit.watcher.id);
    if (!now)
        return false;
    if (criteria(*now) == criteria(visit.watcher))
        return true;
    visit.watcher = *now;
    visit.comparison.setWatcher(*now);
    auto legs = Legs::allOf(*now, m_clock.today());
    // The next round says what is missing.
    if (!legs)
        return false;
    visit.turn.plan(std::move(*legs), storedCursor(now->id));
    showSize(visit.turn);
    return true;
}

void Worker::endVisit(const Visit& visit, Round& round) {
    // Whoever has deleted or paused it does not want to hear of it.
    if (!activeWatcher(visit.watcher.id))
        return;
    const bool hasAnswers = visit.tally.answers() > 0;
    const auto trouble = visit.tally.trouble(refusedUntil(), isSignedOut());
    // The user has opened the sign-in window before the first look.
    if (!hasAnswers && !trouble)
        return;
    round.summary.matches += visit.comparison.satisfied();
    m_database.watchers().markChecked(visit.watcher.id, visit.comparison.satisfied());
    if (!trouble)
        return;
    const auto gaps = visit.tally.gaps(visit.turn.size(), *trouble);
    const QString text = ofWatcher(visit.watcher, hasAnswers ? gaps.value_or(*trouble) : *trouble);
    (hasAnswers && !round.isCut ? round.summary.notes : round.summary.errors).append(text);
}

qint64 Worker::storedCursor(qint64 watcher) {
    const auto cursor = m_database.safekeeping().get(Kept::lookupCursor(watcher));
    return cursor.value_or(QString()).toLongLong();
}

void Worker::storeCursor(qint64 watcher, const Turn& turn) {
    if (const auto cursor = turn.cursor())
        m_database.safekeeping().set(Kept::lookupCursor(watcher), QString::number(*cursor));
}

LegFetcher::Progress Worker::progressOf(const Search& watcher) {
    return [self = QPointer(this), name = watcher.displayName()](LegFetcher::Aside aside) {
        if (self)
            self->setStatus(aside == LegFetcher::Aside::waitsForSignIn
                                ? u"Venter til du er ferdig innlogget…"_s
                                : u"Sjekker %1 — logger inn på nytt"_s.arg(name));
    };
}

void Worker::showLeg(const Visit& visit, const Leg& leg) {
    m_lookupDone = visit.turn.taken() + 1;
    setStatus(u"Sjekker %1 — %2→%3"_s.arg(visit.watcher.displayName(), leg.route.origin,
                                          leg.route.destination));
}

/// A wide watcher's legs are counted once a round.
void Worker::showPlan(const QList<Search>& ahead, Round& round) {
    m_planned.resize(m_progress.done);
    for (const Search& watcher : ahead) {
        auto planned = round.planned.find(watcher.id);
        if (planned == round.planned.end())
            planned =
                round.planned.insert(watcher.id, Legs::countOfRound(watcher, m_clock.today()));
        m_planned.append(*planned);
    }
}

void Worker::showSize(const Turn& turn) {
    m_lookupTotal = turn.size();
    m_planned[m_progress.done] = turn.size();
    m_rotationTotal = turn.rotationTotal();
}

QList<Search> Worker::activeWatchers() {
    return enabledOf(m_database.watchers().listSearches());
}

std::optional<Search> Worker::activeWatcher(qint64 id) {
    const auto watchers = activeWatchers();
    const auto one = std::find_if(watchers.begin(), watchers.end(),
                                  [id](const Search& watcher) { return watcher.id == id; });
    return one == watchers.end() ? std::nullopt : std::optional(*one);
}

void Worker::setStatus(const QString& text) {
    m_statusText = text;
    Q_EMIT changed();
}

std::optional<PollSummary> Worker::loadSummary(const Safekeeping& kept) {
    const auto text = kept.get(Kept::lastPoll);
    return text ? PollSummary::fromJson(*text) : std::nullopt;
}
