// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

/// The process and all its descendants, by their ids.
QList<qint64> processTree(qint64 root);

/// Proportional set size of the processes together, in KiB. Those that have ended count nothing.
qint64 proportionalSetSize(const QList<qint64>& processes);
