// SPDX-License-Identifier: MIT
#include "core/DatabaseFile.h"

#include "core/SqliteConnection.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// What a database consists of. Its companions come first: a log that stayed behind would be taken
/// for the next file's.
const QStringList parts{u"-wal"_s, u"-shm"_s, u"-journal"_s, QString()};

bool syncToDisk(const QString& path) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    if (::fsync(file) == 0) {
        ::close(file);
        return true;
    }
    // What is told is why this failed.
    const int reason = errno;
    ::close(file);
    errno = reason;
    return false;
}

/// An empty file that only its owner may read, which SQLite then fills.
bool makePrivate(const QString& path) {
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return false;
    ::close(file);
    return true;
}

/// Unlike QFile::rename, it replaces `to` in one step.
bool rename(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

QString systemReason() {
    if (errno == ENOSPC || errno == EDQUOT)
        return u"disken er full"_s;
    if (errno == EACCES || errno == EPERM || errno == EROFS)
        return u"mappen er skrivebeskyttet"_s;
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

namespace DatabaseFile {

Finding examine(SqliteConnection& database) {
    Finding finding;
    QString verdict;
    const auto number = [](auto& target) {
        return [&target](const SqliteRow& row) {
            target = static_cast<std::decay_t<decltype(target)>>(row.integer(0));
        };
    };
    int tables = 0;
    const bool isRead =
        database.query("PRAGMA user_version", number(finding.version)) &&
        database.query("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND "
                       "name IN ('searches', 'seen', 'matches', 'kv')",
                       number(tables)) &&
        (finding.version > schemaVersion ||
         database.query("PRAGMA quick_check(1)",
                        [&verdict](const SqliteRow& row) { verdict = row.text(0); }));
    finding.hasTables = tables == 4;
    if (!isRead) {
        finding.condition = database.isDamaged() ? Condition::damaged : Condition::unreadable;
        finding.reason = database.reason();
    } else if (finding.version > schemaVersion) {
        finding.condition = Condition::newer;
        finding.reason = u"den er fra en nyere versjon av Tindra"_s;
    } else if (verdict != u"ok") {
        finding.condition = Condition::damaged;
        finding.reason = u"filen er skadet"_s;
    }
    return finding;
}

std::optional<QString> copy(SqliteConnection& from, const QString& to) {
    const QString part = to + u".part"_s;
    if (!makePrivate(part))
        return systemReason();
    const bool isWritten = from.query("VACUUM INTO ?", {}, part);
    if (isWritten && syncToDisk(part) && rename(part, to)) {
        syncToDisk(QFileInfo(to).path());
        return std::nullopt;
    }
    const QString reason = isWritten ? systemReason() : from.reason();
    QFile::remove(part);
    return reason;
}

bool move(const QString& from, const QString& to) {
    QStringList moved;
    for (const QString& part : parts) {
        if (!QFile::exists(from + part))
            continue;
        if (!rename(from + part, to + part)) {
            for (const QString& done : std::as_const(moved))
                rename(to + done, from + done);
            return false;
        }
        moved.append(part);
    }
    return true;
}

void remove(const QString& path) {
    for (const QString& part : parts)
        QFile::remove(path + part);
}

bool replace(const QString& path, const QString& with, const QString& aside) {
    if (!QFile::exists(with) || !move(path, aside))
        return false;
    if (move(with, path))
        return true;
    move(aside, path);
    return false;
}

} // namespace DatabaseFile
