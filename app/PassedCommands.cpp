// SPDX-License-Identifier: MIT
#include "app/PassedCommands.h"

#include "app/CommandLine.h"
#include "app/ExitCode.h"
#include "app/SignIn.h"
#include "core/Err.h"
#include "platform/Clock.h"
#include "polling/Worker.h"

#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto passedWaitStep = 200ms;

} // namespace

PassedCommands::PassedCommands(MakeHunt makeHunt, RunData runData, ShowWindow showWindow,
                               SignIn& signIn, Worker& worker, Clock& clock)
    : m_makeHunt(std::move(makeHunt))
    , m_runData(std::move(runData))
    , m_showWindow(std::move(showWindow))
    , m_signIn(signIn)
    , m_worker(worker)
    , m_clock(clock) {}

QCoro::Task<CommandAnswer> PassedCommands::run(QStringList arguments) {
    CommandAnswer refusal{
        ExitCode::wrongUsage, {}, u"Tindra som kjører, forstår ikke kommandoen."_s};
    CommandLine line;
    try {
        line = CommandLine::parse(arguments);
    } catch (const Err& error) {
        refusal.err = error.message;
        co_return refusal;
    }
    if (!line.picture.isEmpty()) {
        refusal = {ExitCode::failed, {}, u"«--picture» virker ikke mens Tindra kjører."_s};
        co_return refusal;
    }
    if (line.command == CommandLine::Command::hunt)
        co_return co_await hunt(line.json);
    if (line.command == CommandLine::Command::signIn)
        co_return co_await signIn();
    // The others are for the caller's own process, whose files they name.
    if (line.command == CommandLine::Command::data && changesData(*line.data))
        co_return m_runData(*line.data);
    if (line.command == CommandLine::Command::window) {
        refusal.err = line.hidden ? QString() : m_showWindow();
        refusal.exitCode = refusal.err.isEmpty() ? ExitCode::done : ExitCode::failed;
    }
    co_return refusal;
}

/// A round of its own: one that was under way may have passed by what has changed since.
QCoro::Task<CommandAnswer> PassedCommands::hunt(bool json) {
    const QPointer self(this);
    const auto answer = std::make_shared<CommandAnswer>();
    while (self && m_worker.isBusy())
        co_await m_clock.sleep(passedWaitStep);
    if (!self)
        co_return *answer;
    const Hunt::Output output{[answer](const QByteArray& result) { answer->out += result + '\n'; },
                              [answer](const QString& line) { answer->err += line + u'\n'; }};
    const auto hunt = m_makeHunt(json, output);
    answer->exitCode = co_await hunt->once();
    co_return *answer;
}

QCoro::Task<CommandAnswer> PassedCommands::signIn() {
    const bool works = co_await m_signIn.run();
    CommandAnswer answer;
    answer.exitCode = works ? ExitCode::done : ExitCode::signedOut;
    answer.out = (works ? SignIn::confirmedText() : SignIn::failedText()).toUtf8() + '\n';
    co_return answer;
}
