// SPDX-License-Identifier: MIT
#include "core/DatabaseCopies.h"

#include "core/DatabaseFile.h"
#include "core/DateFmt.h"
#include "core/Err.h"
#include "core/SqliteConnection.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;
using DatabaseFile::Condition;

namespace {

QString replacement(const QString& folder) {
    return DatabaseCopies::main(folder) + u".new"_s;
}

/// The "2027-01-15" of "tindra-copy-2027-01-15.sqlite", and the time where there is one.
QString stampOf(const QString& name) {
    const qsizetype start = name.indexOf(u"-2");
    return start < 0 ? QString() : name.sliced(start + 1).chopped(QLatin1String(".sqlite").size());
}

QStringList files(const QString& folder, const QStringList& kinds) {
    QStringList patterns;
    for (const QString& kind : kinds)
        patterns.append(u"tindra-%1-2*.sqlite"_s.arg(kind));
    return QDir(folder).entryList(patterns, QDir::Files);
}

void putInPlace(const QString& folder, const QString& aside) {
    const QString main = DatabaseCopies::main(folder);
    if (!DatabaseFile::replace(main, replacement(folder), aside))
        throw Err{u"%1 kunne ikke byttes ut."_s.arg(main)};
}

} // namespace

namespace DatabaseCopies {

QString main(const QString& folder) {
    return folder + u"/tindra.sqlite"_s;
}

QString daily(const QString& folder, QDate day) {
    return folder + u"/tindra-copy-%1.sqlite"_s.arg(DateFmt::iso(day));
}

QString dated(const QString& folder, const QString& purpose, const Clock& clock) {
    const auto now =
        QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSince1970(clock.now())));
    const QString stem =
        folder + u"/tindra-%1-%2"_s.arg(purpose, now.toString(u"yyyy-MM-dd-HHmmss"_s));
    QString path = stem + u".sqlite"_s;
    for (int number = 2; QFile::exists(path); ++number)
        path = u"%1-%2.sqlite"_s.arg(stem).arg(number);
    return path;
}

QStringList ordered(QStringList names, QDate today) {
    const QString tomorrow = DateFmt::iso(today.addDays(1));
    std::sort(names.begin(), names.end(), [&tomorrow](const QString& a, const QString& b) {
        const QString first = stampOf(a);
        const QString second = stampOf(b);
        const bool isFirstWrong = first >= tomorrow;
        const bool isSecondWrong = second >= tomorrow;
        return isFirstWrong != isSecondWrong ? isSecondWrong : first > second;
    });
    return names;
}

QStringList candidates(const QString& folder, QDate today) {
    QStringList paths = ordered(files(folder, {u"copy"_s, u"before-upgrade"_s}), today);
    for (QString& name : paths)
        name.prepend(folder + u'/');
    return paths;
}

void prune(const QString& folder, const QString& kind, QDate today) {
    const QStringList names = ordered(files(folder, {kind}), today);
    for (qsizetype i = kept; i < names.size(); ++i)
        QFile::remove(folder + u'/' + names[i]);
}

std::optional<QString> restore(const QString& folder, const QString& file, const Clock& clock) {
    // Opening could not tell this from a file without permission.
    if (!QFileInfo(file).isFile())
        throw Err{u"Fant ikke filen %1."_s.arg(file)};
    SqliteConnection source;
    source.openReadOnly(file);
    const auto finding = DatabaseFile::examine(source);
    if (finding.condition != Condition::usable)
        throw Err{u"%1 kan ikke brukes: %2."_s.arg(file, finding.reason)};
    if (!finding.hasTables)
        throw Err{u"%1 er ikke en Tindra-database."_s.arg(file)};
    QDir().mkpath(folder);
    if (const auto reason = DatabaseFile::copy(source, replacement(folder)))
        throw Err{u"%1 kunne ikke hentes inn: %2."_s.arg(file, *reason)};
    source.close();
    const bool hasPresent = QFile::exists(main(folder));
    const QString aside = dated(folder, u"replaced"_s, clock);
    putInPlace(folder, aside);
    return hasPresent ? std::optional(aside) : std::nullopt;
}

bool undoRestore(const QString& folder, const QString& replaced) {
    if (!DatabaseFile::replace(main(folder), replaced, replacement(folder)))
        return false;
    DatabaseFile::remove(replacement(folder));
    return true;
}

void tidy(const QString& folder) {
    if (!QFile::exists(main(folder)) && QFile::exists(replacement(folder)))
        DatabaseFile::move(replacement(folder), main(folder));
    const QStringList parts = QDir(folder).entryList({u"tindra*.part"_s}, QDir::Files);
    for (const QString& name : parts)
        QFile::remove(folder + u'/' + name);
}

QString replaceDamaged(const QString& folder, const QString& aside, QDate today) {
    for (const QString& candidate : candidates(folder, today)) {
        SqliteConnection copy;
        copy.openReadOnly(candidate);
        const auto finding = DatabaseFile::examine(copy);
        if (finding.condition != Condition::usable || !finding.hasTables)
            continue;
        if (const auto reason = DatabaseFile::copy(copy, replacement(folder)))
            throw Err{u"%1 er skadet eller borte, og kopien %2 kunne ikke tas i bruk: %3."_s.arg(
                main(folder), candidate, *reason)};
        putInPlace(folder, aside);
        return QFileInfo(candidate).fileName();
    }
    QFile::remove(replacement(folder));
    if (!DatabaseFile::move(main(folder), aside))
        throw Err{u"%1 kunne ikke settes til side."_s.arg(main(folder))};
    return {};
}

} // namespace DatabaseCopies
