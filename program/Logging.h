// SPDX-License-Identifier: MIT
#pragma once

#include "core/TDLog.h"
#include "platform/Folders.h"

/// Keeps the log open; made first of all, since opening the database may have something to say.
struct Logging {
    Logging(const Folders& folders, const Clock& clock) {
        TDLog::start(folders.data() + QStringLiteral("/ui.log"), &clock);
    }
    ~Logging() { TDLog::start({}, nullptr); }
    Q_DISABLE_COPY_MOVE(Logging)
};
