// SPDX-License-Identifier: MIT
#include "core/TDLog.h"

#include "platform/Clock.h"

#include <QDateTime>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray logPath;
const Clock* logClock = nullptr;

} // namespace

namespace TDLog {

void start(const QString& path, const Clock* clock) {
    logPath = QFile::encodeName(path);
    logClock = clock;
}

void note(const QString& message) {
    if (!logClock)
        return;
    const auto seconds = static_cast<qint64>(secondsSince1970(logClock->now()));
    const QByteArray line =
        QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate).toUtf8() + ' ' +
        message.toUtf8() + '\n';
    // One write of one appended line: another process that logs cannot get in between.
    const int file =
        ::open(logPath.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return;
    [[maybe_unused]] const auto written =
        ::write(file, line.constData(), static_cast<size_t>(line.size()));
    ::close(file);
}

} // namespace TDLog
