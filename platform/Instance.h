// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// How a command that another process carried out has ended.
struct CommandAnswer {
    /// The program's exit code.
    int exitCode = 0;
    /// For standard output.
    QByteArray out;
    /// For standard error, plain text.
    QString err;

    bool operator==(const CommandAnswer&) const = default;
};

/// Keeps a data folder to one process: the first has it, later ones pass their command on.
class Instance {
public:
    /// Carries out a command line, given without the program's name.
    using Handler = std::function<QCoro::Task<CommandAnswer>(QStringList arguments)>;

    virtual ~Instance() = default;

    /// True when this process has the folder, or when the folder cannot tell.
    virtual bool isFirst() const = 0;
    /// From now on `handler` carries out what later processes pass on. For the first only.
    virtual void serve(Handler handler) = 0;
    /// Lets the desktop start and activate this process by the application's own name: `activate`
    /// brings the window to the front, `checkNow` is the launcher's action "check-now". For the
    /// first only, after `serve`.
    virtual void answerDesktop(std::function<void()> activate, std::function<void()> checkNow) = 0;
    /// Lets the first process carry out a command, however long it takes; absent when it takes
    /// none, or ends meanwhile.
    virtual QCoro::Task<std::optional<CommandAnswer>> pass(QStringList arguments) = 0;
};
