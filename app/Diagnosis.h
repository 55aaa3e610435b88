// SPDX-License-Identifier: MIT
#pragma once

#include "app/Redaction.h"
#include "polling/PollSummary.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

class AppState;
class Clock;
class Database;
class SessionState;

/// What a user can send along with a report of an error: how this Tindra is made up and how it is
/// doing, without anything private.
namespace Diagnosis {

/// What only the program itself knows.
struct Program {
    /// The web engine's version, such as "2.50.6".
    QString engine;
    bool isSandboxed = false;
    /// The data folder, where the log is.
    QString folder;
    QString homeFolder;
    QString userName;
};

struct Facts {
    /// Name and version of what Tindra is built on and runs on.
    QList<std::pair<QString, QString>> versions;
    /// Why the engine is too old; empty when it is not.
    QString engineWarning;
    /// Of the storage; empty when all is well.
    QString problem;
    QString notice;
    int watchers = 0;
    int enabledWatchers = 0;
    /// As many as the screens show.
    int offers = 0;
    int soldOutRecords = 0;
    int communityFinds = 0;
    /// Such as "innlogget".
    QString login;
    std::optional<PollSummary> lastPoll;
    QList<std::pair<QString, QString>> settings;
    /// The last lines of the log, the oldest first.
    QStringList log;
};

/// The most lines of the log that are taken.
inline constexpr int logLines = 100;

Facts collect(Database& database, const AppState& state, const SessionState& session,
              const Clock& clock, const Program& program);

/// Some Norwegian lines. Errors of the last round are counted only, since they may name watchers;
/// the log, and what the storage says, are redacted.
QString text(const Facts& facts, const Redaction::Secrets& secrets);

/// What of `program` and the stored watchers is private.
Redaction::Secrets secrets(const AppState& state, const Program& program);

/// The last `logLines` lines of a file; empty when it cannot be read.
QStringList lastLines(const QString& path);

} // namespace Diagnosis
