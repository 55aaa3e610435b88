// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

/// What processes have of the memory, in KiB; a page that several share counts as a part in each.
struct ProportionalSetSize {
    qint64 all = 0;
    /// Without what is mapped from files. Others on the machine that run the same libraries make
    /// that part smaller, and when they end it is larger again; here they change nothing.
    qint64 own = 0;
};

/// The process and all its descendants, by their ids.
QList<qint64> processTree(qint64 root);

/// Of all of them together. Those that have ended count nothing.
ProportionalSetSize proportionalSetSize(const QList<qint64>& processes);
