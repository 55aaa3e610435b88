// SPDX-License-Identifier: MIT
#pragma once

#include "app/Hunt.h"
#include "app/commands/DataCommand.h"
#include "platform/Instance.h"

#include <QObject>

class Clock;
class SignIn;
class Worker;

/// Carries out what a second start of Tindra asks of the one that runs.
class PassedCommands : public QObject {
    Q_OBJECT
public:
    using MakeHunt = std::function<std::unique_ptr<Hunt>(bool json, Hunt::Output output)>;
    using RunData = std::function<CommandAnswer(const DataCommand& command)>;

    /// Shows the window; what it returns says why there is none, and is empty otherwise.
    using ShowWindow = std::function<QString()>;

    /// All must outlive this object.
    PassedCommands(MakeHunt makeHunt, RunData runData, ShowWindow showWindow, SignIn& signIn,
                   Worker& worker, Clock& clock);

    QCoro::Task<CommandAnswer> run(QStringList arguments);

private:
    QCoro::Task<CommandAnswer> hunt(bool json);
    QCoro::Task<CommandAnswer> signIn();

    MakeHunt m_makeHunt;
    RunData m_runData;
    ShowWindow m_showWindow;
    SignIn& m_signIn;
    Worker& m_worker;
    Clock& m_clock;
};
