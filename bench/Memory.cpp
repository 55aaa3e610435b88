// SPDX-License-Identifier: MIT
// Memory of the whole process tree while the demo hunts, the stand-in airline included.
#include "bench/ProcessTree.h"
#include "bench/Results.h"

#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

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
                     [&] { most = std::max(most, ProcessTree(program.processId()).pss().all); });
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
