// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class Clock;

/// The diagnostic log: a plain text file, "ui.log" in the data folder, that the user can send
/// along when something goes wrong. It is for a few lines an action, not for tracing, and nothing
/// private may be written to it.
namespace TDLog {

/// Writes to `path` from now on. The log never creates folders. `clock` must outlive the log or
/// the next `start`; null stops logging, which is also the state before the first call.
void start(const QString& path, const Clock* clock);

/// Appends one line: the time in UTC, a space, and the message. Never fails visibly.
void note(const QString& message);

} // namespace TDLog
