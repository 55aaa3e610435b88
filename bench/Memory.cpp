// SPDX-License-Identifier: MIT
// Memory of the whole process tree while the demo hunts, the stand-in airline included.
#include "bench/Results.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Proportional set size of the process and all its descendants, in KiB.
qint64 treePss(qint64 root) {
    QHash<qint64, qint64> parents;
    for (const QString& entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile stat(u"/proc/%1/stat"_s.arg(entry));
        if (entry.toLongLong() <= 0 || !stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        parents.insert(entry.toLongLong(),
                       line.mid(line.lastIndexOf(')') + 4).split(' ').value(0).toLongLong());
    }
    qint64 sum = 0;
    for (const qint64 process : parents.keys()) {
        qint64 ancestor = process;
        while (ancestor > 1 && ancestor != root)
            ancestor = parents.value(ancestor);
        QFile rollup(u"/proc/%1/smaps_rollup"_s.arg(process));
        if (ancestor != root || !rollup.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : rollup.readAll().split('\n')) {
            if (line.startsWith("Pss:"))
                sum += line.mid(4).trimmed().split(' ').first().toLongLong();
        }
    }
    return sum;
}

} // namespace

QList<Result> measureMemory() {
    const QTemporaryDir home;
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, home.path());
    environment.insert(u"XDG_CACHE_HOME"_s, home.path());
    program.setProcessEnvironment(environment);
    qint64 most = 0;
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer,
                     [&] { most = std::max(most, treePss(program.processId())); });
    QObject::connect(&program, &QProcess::finished, &loop, &QEventLoop::quit);
    program.start(QStringLiteral(TINDRA_PROGRAM), {u"hunt"_s, u"--demo"_s, u"--once"_s});
    timer.start(100);
    loop.exec();
    if (program.exitCode() != 0)
        qFatal("the demo failed: %s", program.readAllStandardError().constData());
    const double mebibytes = static_cast<double>(most) / 1024;
    return {{u"memory of the whole process tree while hunting (PSS)"_s,
             u"%1 MiB"_s.arg(mebibytes, 0, 'f', 0), u"< 320 MB"_s, mebibytes * 1.048576 < 320}};
}
