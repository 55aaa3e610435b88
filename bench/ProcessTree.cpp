// SPDX-License-Identifier: MIT
#include "bench/ProcessTree.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Empty when the process has ended.
QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The fields of `stat` after the name, from the state on, which is the third.
QList<QByteArray> statFields(qint64 process) {
    const QByteArray line = read(u"/proc/%1/stat"_s.arg(process));
    return line.mid(line.lastIndexOf(')') + 2).split(' ');
}

qint64 parentOf(qint64 process) {
    return statFields(process).value(1).toLongLong();
}

/// The number on the line of `text` that begins with `name`; 0 when there is none.
qint64 numberAfter(const QByteArray& text, const QByteArray& name) {
    const qsizetype start = text.indexOf(name);
    if (start < 0)
        return 0;
    const QByteArray rest = text.mid(start + name.size());
    return rest.left(rest.indexOf('\n')).trimmed().split(' ').first().toLongLong();
}

} // namespace

QList<qint64> ProcessTree::processes() const {
    QHash<qint64, qint64> parents;
    for (const QString& entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        if (entry.toLongLong() > 0)
            parents.insert(entry.toLongLong(), parentOf(entry.toLongLong()));
    }
    QList<qint64> found;
    for (const qint64 process : parents.keys()) {
        qint64 ancestor = process;
        while (ancestor > 1 && ancestor != m_root)
            ancestor = parents.value(ancestor);
        if (ancestor == m_root)
            found.append(process);
    }
    return found;
}

double ProcessTree::cpu() const {
    qint64 ticks = 0;
    for (const qint64 process : processes()) {
        const auto fields = statFields(process);
        ticks += fields.value(11).toLongLong() + fields.value(12).toLongLong();
    }
    return static_cast<double>(ticks) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

QMap<QString, qint64> ProcessTree::wakeUps() const {
    QMap<QString, qint64> counts;
    for (const qint64 process : processes()) {
        const QString folder = u"/proc/%1/task"_s.arg(process);
        for (const QString& thread : QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            counts.insert(u"%1/%2"_s.arg(process).arg(thread),
                          numberAfter(read(u"%1/%2/status"_s.arg(folder, thread)),
                                      "\nvoluntary_ctxt_switches:"));
    }
    return counts;
}

ProportionalSetSize ProcessTree::pss() const {
    ProportionalSetSize sum;
    for (const qint64 process : processes()) {
        const QByteArray rollup = read(u"/proc/%1/smaps_rollup"_s.arg(process));
        sum.all += numberAfter(rollup, "\nPss:");
        sum.own += numberAfter(rollup, "\nPss_Anon:") + numberAfter(rollup, "\nPss_Shmem:");
    }
    return sum;
}
