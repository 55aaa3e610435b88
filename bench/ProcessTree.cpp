// SPDX-License-Identifier: MIT
#include "bench/ProcessTree.h"

#include <QDir>
#include <QFile>
#include <QHash>

using namespace Qt::StringLiterals;

QList<qint64> processTree(qint64 root) {
    QHash<qint64, qint64> parents;
    for (const QString& entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile stat(u"/proc/%1/stat"_s.arg(entry));
        if (entry.toLongLong() <= 0 || !stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        parents.insert(entry.toLongLong(),
                       line.mid(line.lastIndexOf(')') + 4).split(' ').value(0).toLongLong());
    }
    QList<qint64> tree;
    for (auto process = parents.keyBegin(); process != parents.keyEnd(); ++process) {
        qint64 ancestor = *process;
        while (ancestor > 1 && ancestor != root)
            ancestor = parents.value(ancestor);
        if (ancestor == root)
            tree.append(*process);
    }
    return tree;
}

ProportionalSetSize proportionalSetSize(const QList<qint64>& processes) {
    ProportionalSetSize sum;
    for (const qint64 process : processes) {
        QFile rollup(u"/proc/%1/smaps_rollup"_s.arg(process));
        if (!rollup.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : rollup.readAll().split('\n')) {
            const QByteArray kibibytes = line.mid(line.indexOf(':') + 1).trimmed();
            const qint64 size = kibibytes.split(' ').first().toLongLong();
            if (line.startsWith("Pss:"))
                sum.all += size;
            else if (line.startsWith("Pss_Anon:") || line.startsWith("Pss_Shmem:"))
                sum.own += size;
        }
    }
    return sum;
}
