// SPDX-License-Identifier: MIT
#pragma once

#include "core/Search.h"

/// The watcher that the words after "watchers add" describe. Throws Err when they make no sense by
/// themselves; whether its dates are past is for whoever has a clock.
Search parseNewWatcher(const QStringList& words);
