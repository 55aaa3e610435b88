// SPDX-License-Identifier: MIT
#include "app/commands/BackupCommand.h"

#include "app/ExitCode.h"
#include "app/commands/Arguments.h"
#include "core/Database.h"
#include "core/DatabaseCopies.h"
#include "core/Err.h"

#include <QDir>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QString fileOf(const QString& command, const QStringList& words) {
    return Arguments(command, words, {u"--demo"_s}, {}).word(u"navnet på en fil"_s);
}

QString counted(Database& database) {
    const auto watchers = database.watchers().listSearches().size();
    return u"%1 %2 og %3 treff"_s.arg(watchers)
        .arg(watchers == 1 ? u"overvåker"_s : u"overvåkere"_s)
        .arg(database.offers().recentMatches(std::numeric_limits<int>::max()).size());
}

} // namespace

BackUp BackUp::parse(const QStringList& words) {
    return {fileOf(u"tindra backup"_s, words)};
}

CommandAnswer BackUp::run(const DataContext& context) const {
    if (const auto reason = context.database.copyTo(QDir().absoluteFilePath(file)))
        return {ExitCode::failed, {}, u"Ingen sikkerhetskopi ble laget: %1\n"_s.arg(*reason)};
    return {ExitCode::done,
            u"%1 er lagret i %2. Innlogging og passord er ikke med.\n"_s
                .arg(counted(context.database), file)
                .toUtf8(),
            {}};
}

Restore Restore::parse(const QStringList& words) {
    return {fileOf(u"tindra restore"_s, words)};
}

CommandAnswer Restore::run(const QString& folder, const Clock& clock) const {
    const auto replaced = DatabaseCopies::restore(folder, QDir().absoluteFilePath(file), clock);
    std::optional<Database> database(std::in_place, folder, clock);
    const QString whereItIs =
        replaced ? u"Databasen som var der, ligger i %1."_s.arg(*replaced) : QString();
    if (const auto problem = database->problem()) {
        database.reset();
        const bool isBack = replaced && DatabaseCopies::undoRestore(folder, *replaced);
        throw Err{u"%1 kunne ikke hentes inn. %2 %3"_s
                      .arg(file, *problem,
                           isBack ? u"Databasen som var der, er satt tilbake."_s : whereItIs)
                      .trimmed()};
    }
    // What the copy had to tell was about another file.
    database->dismissNotice();
    QString text = u"%1 er hentet inn fra %2.\n"_s.arg(counted(*database), file);
    if (replaced)
        text += whereItIs + u'\n';
    return {ExitCode::done, text.toUtf8(), {}};
}
