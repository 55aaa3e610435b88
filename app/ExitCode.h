// SPDX-License-Identifier: MIT
#pragma once

/// Exit codes of the program.
enum ExitCode {
    roundEnded = 0,
    done = 0,
    cannotStart = 1,
    wrongUsage = 2,
    watcherFailed = 3,
    signedOut = 4,
    interrupted = 5,
};
