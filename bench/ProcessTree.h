// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QString>

/// What processes have of the memory, in KiB; a page that several share counts as a part in each.
struct ProportionalSetSize {
    qint64 all = 0;
    /// Without what is mapped from files. Others on the machine that run the same libraries make
    /// that part smaller, and when they end it is larger again; here they change nothing.
    qint64 own = 0;
};

/// A process with all its descendants, as the kernel's counters show them.
class ProcessTree {
public:
    explicit ProcessTree(qint64 root) : m_root(root) {}

    QList<qint64> processes() const;
    /// Time of one core that its processes have used since they began, in seconds; in steps of
    /// 10 ms a process.
    double cpu() const;
    /// How often each of its threads has waited for something and was woken, by "process/thread".
    QMap<QString, qint64> wakeUps() const;
    ProportionalSetSize pss() const;

private:
    qint64 m_root;
};
