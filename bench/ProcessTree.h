// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

/// A process with all its descendants, as the kernel's counters show them.
class ProcessTree {
public:
    /// What a tree has used since its processes began.
    struct Use {
        /// Of one core, in seconds; in steps of 10 ms a process.
        double cpu = 0;
        /// How often one of its threads has waited for something and was woken.
        qint64 wakeUps = 0;
    };

    explicit ProcessTree(qint64 root) : m_root(root) {}

    QList<qint64> processes() const;
    Use use() const;
    /// Proportional set size in KiB. Tindra lets nobody but root read its memory's size, so others
    /// are told so and the program ends.
    qint64 pss() const;
    /// One line a thread with what it has used, for whoever wonders who it was.
    QString threads() const;

private:
    qint64 m_root;
};
