// SPDX-License-Identifier: MIT
#pragma once

/// What the end of a command says to whoever started it.
namespace ExitCode {

enum Code : int {
    done = 0,
    /// Tindra could not start, or could not do what was asked.
    failed = 1,
    wrongUsage = 2,
    /// The round ended, and at least one watcher's lookup failed.
    watcherFailed = 3,
    signedOut = 4,
    interrupted = 5,
    /// The airline asks to be left alone: nothing, or not everything, was looked at.
    refused = 6,
};

} // namespace ExitCode
