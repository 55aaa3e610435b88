// SPDX-License-Identifier: MIT
#include "bench/soak/Reading.h"

#include "bench/ProcessTree.h"
#include "core/SqliteConnection.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

double kibibytes(const QString& file) {
    return static_cast<double>(QFileInfo(file).size()) / 1024;
}

qsizetype entries(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

qint64 number(SqliteConnection& file, const char* sql) {
    qint64 result = -1;
    file.query(sql, [&result](const SqliteRow& row) { result = row.integer(0); });
    return result;
}

double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    const auto middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

Reading Reading::of(const QString& folder) {
    Reading reading;
    const ProcessTree tree(QCoreApplication::applicationPid());
    const auto processes = tree.processes();
    reading.processes = processes.size();
    const auto memory = tree.pss();
    reading.pss = static_cast<double>(memory.all) / 1024;
    reading.own = static_cast<double>(memory.own) / 1024;
    reading.openFiles = entries(u"/proc/self/fd"_s);
    reading.threads = entries(u"/proc/self/task"_s);
    SqliteConnection file;
    file.openReadOnly(folder + u"/tindra.sqlite"_s);
    reading.matches = number(file, "SELECT count(*) FROM matches");
    reading.seen = number(file, "SELECT count(*) FROM seen");
    reading.settings = number(file, "SELECT count(*) FROM kv");
    reading.database =
        kibibytes(folder + u"/tindra.sqlite"_s) + kibibytes(folder + u"/tindra.sqlite-wal"_s);
    reading.log = kibibytes(folder + u"/ui.log"_s);
    for (QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         files.hasNext();)
        reading.folder += kibibytes(files.next());
    return reading;
}

QString Reading::heading() {
    return u" hours  PSS MiB  own MiB  processes  files  threads  rounds  matches  seen  kv  "
           u"database KiB  log KiB  folder KiB\n"_s;
}

QString Reading::line() const {
    return u"%1  %2  %3  %4  %5  %6  %7  %8  %9  %10  %11  %12  %13\n"_s.arg(hours, 6, 'f', 2)
        .arg(pss, 7, 'f', 1)
        .arg(own, 7, 'f', 1)
        .arg(processes, 9)
        .arg(openFiles, 5)
        .arg(threads, 7)
        .arg(rounds, 6)
        .arg(matches, 7)
        .arg(seen, 4)
        .arg(settings, 2)
        .arg(database, 12, 'f', 0)
        .arg(log, 7, 'f', 1)
        .arg(folder, 10, 'f', 0);
}

double growth(const QList<Reading>& readings) {
    const auto quarter = readings.size() / 4;
    if (quarter == 0)
        return 0;
    const auto memory = [&readings](qsizetype from, qsizetype count) {
        QList<double> values;
        for (const Reading& reading : readings.mid(from, count))
            values.append(reading.own);
        return median(values);
    };
    return memory(readings.size() - quarter, quarter) / memory(quarter, quarter);
}

QString damage(const QString& folder) {
    SqliteConnection file;
    file.openReadOnly(folder + u"/tindra.sqlite"_s);
    QStringList lines;
    if (!file.query("PRAGMA integrity_check",
                    [&lines](const SqliteRow& row) { lines.append(row.text(0)); }))
        return u"cannot be read"_s;
    return lines == QStringList{u"ok"_s} ? QString() : lines.join(u"; "_s);
}
