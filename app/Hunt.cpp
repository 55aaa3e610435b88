// SPDX-License-Identifier: MIT
#include "app/Hunt.h"

#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "airline/Standing.h"
#include "app/ExitCode.h"
#include "core/Cabin.h"
#include "core/Database.h"
#include "core/DateFmt.h"
#include "platform/NotificationCenter.h"
#include "polling/Worker.h"
#include "sharing/Sharing.h"

#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto notificationPatience = 5s;
constexpr auto sharingPatience = 15s;
constexpr auto windowStep = 1s;

} // namespace

Hunt::Hunt(Database& database, SessionState& session, Worker& worker, Sharing& sharing,
           NotificationCenter& notifications, Clock& clock, bool json, Output output)
    : m_database(database)
    , m_session(session)
    , m_worker(worker)
    , m_sharing(sharing)
    , m_notifications(notifications)
    , m_clock(clock)
    , m_json(json)
    , m_output(std::move(output)) {
    connect(&worker, &Worker::changed, this, &Hunt::showStatus);
    connect(&session, &SessionState::loginStatusChanged, this, &Hunt::sayIfSignedOut);
    connect(&worker, &Worker::roundEnded, this, [this](const PollSummary& summary) {
        m_lastRound = summary;
        ++m_rounds;
    });
    connect(&worker, &Worker::matchFound, this, [this](const Match& match) {
        m_found.append(match);
        m_output.progress(
            u"  ✈ %1 %2, %3 %4"_s.arg(DateFmt::iso(match.travelDate()), match.route().text(),
                                      QString::number(match.seats), label(match.cabin)));
    });
    connect(&worker, &Worker::soldOut, this, [this](const SoldOut& record) {
        m_soldOut.append(record);
        m_output.progress(u"  ✗ utsolgt: "_s + record.label);
    });
}

QCoro::Task<int> Hunt::once() {
    const QPointer self(this);
    sayWhatIsMissing();
    const auto refusedUntil = m_worker.refusedUntil();
    PollSummary summary = co_await m_worker.pollOnce();
    // Automatic sign-in needs the user; ending now would close the window on them.
    if (self && m_session.isLoginWindowOpen())
        summary = co_await roundAfterSignIn();
    if (!self)
        co_return ExitCode::failed;
    if (refusedUntil)
        summary.errors.append(StandBack::text(*refusedUntil) + u'.');
    sayWhatStorageTells();
    write(takeReport(summary));
    // Others' finds are announced too, so this comes first.
    co_await m_sharing.finished(sharingPatience);
    if (self)
        co_await notificationsTaken();
    if (!self)
        co_return ExitCode::failed;
    switch (standing(m_session.loginStatus().state, m_worker.refusedUntil().has_value(), false)) {
    case Standing::signedOut:
        co_return ExitCode::signedOut;
    case Standing::refused:
        co_return ExitCode::refused;
    default:
        co_return summary.errors.isEmpty() ? ExitCode::done : ExitCode::watcherFailed;
    }
}

/// Whoever listens to the window may have begun the round already, or be done with it.
QCoro::Task<PollSummary> Hunt::roundAfterSignIn() {
    const QPointer self(this);
    const int before = m_rounds;
    m_output.progress(u"Fullfør innloggingen i vinduet som står åpent."_s);
    while (self && m_session.isLoginWindowOpen())
        co_await m_clock.sleep(windowStep);
    PollSummary summary;
    if (!self)
        co_return summary;
    if (m_rounds > before && !m_worker.isBusy()) {
        summary = m_lastRound;
        co_return summary;
    }
    m_worker.forgetRevivalAttempt();
    summary = co_await m_worker.joinRound();
    co_return summary;
}

void Hunt::start() {
    sayWhatIsMissing();
    connect(&m_worker, &Worker::roundEnded, this,
            [this](const PollSummary& summary) { write(takeReport(summary)); });
    connect(&m_database, &Database::conditionChanged, this, &Hunt::sayWhatStorageTells);
    connect(&m_worker, &Worker::idle, this, &Hunt::sayIfRefused);
    m_worker.startTimer();
}

QCoro::Task<> Hunt::stop() {
    m_worker.stopTimer();
    co_await notificationsTaken();
}

void Hunt::sayWhatIsMissing() {
    sayWhatStorageTells();
    if (m_saidProblem)
        return;
    if (enabledOf(m_database.watchers().listSearches()).isEmpty())
        m_output.progress(
            u"Ingen aktive overvåkere: det er ingenting å sjekke. Prøv med --demo."_s);
}

void Hunt::sayWhatStorageTells() {
    const auto problem = m_database.problem();
    if (std::exchange(m_saidProblem, problem) != problem && problem)
        m_output.progress(*problem);
    // Until the user has seen it in the window.
    const auto notice = m_database.notice();
    if (std::exchange(m_saidNotice, notice) != notice && notice)
        m_output.progress(*notice);
}

void Hunt::sayIfSignedOut() {
    const bool isSignedOut = m_session.loginStatus().isLoggedOut();
    if (isSignedOut && !m_saidSignedOut)
        m_output.progress(u"Utlogget hos SAS: rundene får ingen data før du har logget inn. Kjør "
                          u"«tindra sign-in»."_s);
    // A session that is only being checked is not back yet.
    if (m_session.loginStatus().state != SASLoginStatus::Case::checking)
        m_saidSignedOut = isSignedOut;
}

/// Once, since the rounds that are left out say nothing themselves.
void Hunt::sayIfRefused() {
    const auto until = m_worker.refusedUntil();
    const QString text = until ? StandBack::text(*until) : QString();
    if (std::exchange(m_saidRefusal, text) != text && until)
        m_output.progress(text + u". Jakten går videre av seg selv."_s);
}

void Hunt::showStatus() {
    if (!m_worker.isRunning() || m_worker.statusText().isEmpty())
        return;
    const auto [done, total] = m_worker.progress();
    QString status = u"[%1/%2] %3"_s.arg(done + 1).arg(total).arg(m_worker.statusText());
    if (m_worker.lookupDone() > 0)
        status += u" (%1 av %2)"_s.arg(m_worker.lookupDone()).arg(m_worker.lookupTotal());
    if (std::exchange(m_shownStatus, status) != status)
        m_output.progress(status);
}

HuntReport Hunt::takeReport(const PollSummary& summary) {
    return {summary, std::exchange(m_found, {}), std::exchange(m_soldOut, {})};
}

void Hunt::write(const HuntReport& report) {
    m_output.result(m_json ? report.toJson() : report.toText().toUtf8());
}

/// The desktop would never see a notification that is still on its way when the program ends.
QCoro::Task<> Hunt::notificationsTaken() {
    if (m_notifications.pending() == 0)
        co_return;
    const OneShot<bool> taken;
    connect(&m_notifications, &NotificationCenter::settled, this, [taken] { taken.resolve(true); });
    const auto timer = m_clock.after(notificationPatience, [taken] { taken.resolve(false); });
    co_await taken;
}
