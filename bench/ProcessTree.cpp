// SPDX-License-Identifier: MIT
#include "bench/ProcessTree.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Empty when the process has ended.
QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The fields of `stat` after the name, from the state on, which is the third.
QList<QByteArray> statFields(const QString& folder) {
    const QByteArray line = read(folder + u"/stat"_s);
    return line.mid(line.lastIndexOf(')') + 2).split(' ');
}

qint64 parentOf(qint64 process) {
    return statFields(u"/proc/%1"_s.arg(process)).value(1).toLongLong();
}

double cpuOf(const QString& folder) {
    const auto fields = statFields(folder);
    return static_cast<double>(fields.value(11).toLongLong() + fields.value(12).toLongLong()) /
           static_cast<double>(::sysconf(_SC_CLK_TCK));
}

/// The number on the line of `text` that begins with `name`; 0 when there is none.
qint64 numberAfter(const QByteArray& text, const QByteArray& name) {
    const qsizetype start = text.indexOf(name);
    if (start < 0)
        return 0;
    const QByteArray rest = text.mid(start + name.size());
    return rest.left(rest.indexOf('\n')).trimmed().split(' ').first().toLongLong();
}

QStringList threadFolders(qint64 process) {
    const QString folder = u"/proc/%1/task"_s.arg(process);
    QStringList folders = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (QString& name : folders)
        name = folder + u'/' + name;
    return folders;
}

qint64 wakeUpsOf(const QString& thread) {
    return numberAfter(read(thread + u"/status"_s), "\nvoluntary_ctxt_switches:");
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

ProcessTree::Use ProcessTree::use() const {
    Use sum;
    for (const qint64 process : processes()) {
        sum.cpu += cpuOf(u"/proc/%1"_s.arg(process));
        for (const QString& thread : threadFolders(process))
            sum.wakeUps += wakeUpsOf(thread);
    }
    return sum;
}

qint64 ProcessTree::pss() const {
    qint64 sum = 0;
    for (const qint64 process : processes()) {
        QFile rollup(u"/proc/%1/smaps_rollup"_s.arg(process));
        errno = 0;
        if (rollup.open(QIODevice::ReadOnly))
            sum += numberAfter(rollup.readAll(), "\nPss:");
        else if (errno == EACCES || errno == EPERM)
            qFatal("the memory of Tindra, which is protected, can be measured by root only");
    }
    return sum;
}

QString ProcessTree::threads() const {
    QString lines;
    for (const qint64 process : processes()) {
        for (const QString& thread : threadFolders(process))
            lines += u"%1 %2 %3 s, %4\n"_s.arg(
                QString::number(process), QString::fromUtf8(read(thread + u"/comm"_s).trimmed()),
                QString::number(cpuOf(thread), 'f', 2), QString::number(wakeUpsOf(thread)));
    }
    return lines;
}
