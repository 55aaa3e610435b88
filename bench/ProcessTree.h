// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QString>

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
    /// Proportional set size in KiB. Tindra lets nobody but root read its memory's size, so others
    /// are told so and the program ends.
    qint64 pss() const;

private:
    qint64 m_root;
};
