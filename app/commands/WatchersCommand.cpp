// SPDX-License-Identifier: MIT
#include "app/commands/WatchersCommand.h"

#include "airports/Airports.h"
#include "app/ExitCode.h"
#include "app/commands/Arguments.h"
#include "app/commands/NewWatcher.h"
#include "core/Database.h"
#include "core/DateFmt.h"
#include "core/Err.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QJsonObject json(const Search& watcher, int hits) {
    return {{u"id"_s, watcher.id},
            {u"name"_s, watcher.name},
            {u"origin"_s, QJsonArray::fromStringList(Search::codes(watcher.origin))},
            {u"destination"_s, QJsonArray::fromStringList(Search::codes(watcher.destination))},
            {u"cabins"_s, QJsonArray::fromStringList(encodeCabins(watcher.cabins).split(u','))},
            {u"minSeats"_s, watcher.minSeats},
            {u"maxStops"_s, watcher.maxStops},
            {u"dateFrom"_s, DateFmt::iso(watcher.dateFrom)},
            {u"dateTo"_s, DateFmt::iso(watcher.dateTo)},
            {u"returnDateFrom"_s, DateFmt::iso(watcher.returnDateFrom)},
            {u"returnDateTo"_s, DateFmt::iso(watcher.returnDateTo)},
            {u"includePartners"_s, watcher.includePartners},
            {u"enabled"_s, watcher.enabled},
            {u"lastChecked"_s, watcher.lastChecked
                                   ? QJsonValue(secondsSince1970(*watcher.lastChecked))
                                   : QJsonValue()},
            {u"lastFound"_s, watcher.lastFound},
            {u"hits"_s, hits}};
}

QString line(const Search& watcher, int hits, Instant now) {
    const auto days = [](QDate from, QDate to) {
        const QString first = DateFmt::iso(from);
        return from == to || !to.isValid() ? first : first + u".."_s + DateFmt::iso(to);
    };
    QStringList parts{u"%1  %2"_s.arg(watcher.id, 4).arg(watcher.enabled ? u"på   "_s : u"pause"_s),
                      watcher.displayName(), u"%1 → %2"_s.arg(watcher.origin, watcher.destination),
                      u"ut "_s + days(watcher.dateFrom, watcher.dateTo)};
    if (watcher.name.isEmpty())
        parts.removeAt(1);
    if (watcher.isRoundTrip())
        parts.append(u"hjem "_s + days(watcher.returnDateFrom, watcher.returnDateTo));
    parts.append(cabinLabels(watcher.cabins));
    parts.append(u"minst %1 seter, høyst %2 stopp%3"_s.arg(watcher.minSeats)
                     .arg(watcher.maxStops)
                     .arg(watcher.includePartners ? u", med partnere"_s : QString()));
    const QString checked = DateFmt::ago(watcher.lastChecked, now);
    parts.append(watcher.lastChecked ? u"sjekket "_s + checked : checked);
    parts.append(u"%1 treff"_s.arg(hits));
    return parts.join(u"  "_s);
}

/// A code that the catalogue lacks may be right, and may be a slip.
QString unknownCodes(const Search& watcher) {
    QString lines;
    for (const QString& code : Search::codes(watcher.origin + u',' + watcher.destination)) {
        if (!Airports::byCode().contains(code))
            lines += u"Merk: Tindra kjenner ikke flyplassen %1.\n"_s.arg(code);
    }
    return lines;
}

} // namespace

std::variant<ListWatchers, AddWatcher, ChangeWatcher> parseWatchers(const QStringList& words) {
    using Change = ChangeWatcher::Change;
    const QString what = words.value(0);
    const QString command = u"tindra watchers "_s + what;
    if (what == u"list") {
        const Arguments arguments(command, words.sliced(1), {u"--demo"_s, u"--json"_s}, {});
        arguments.noWords();
        return ListWatchers{arguments.has(u"--json"_s)};
    }
    if (what == u"add")
        return AddWatcher{parseNewWatcher(words.sliced(1))};
    const QStringList changes{u"pause"_s, u"resume"_s, u"remove"_s};
    const qsizetype change = changes.indexOf(what);
    if (change < 0)
        throw Err{u"«tindra watchers» trenger list, add, pause, resume eller remove. «tindra "
                  u"--help» viser bruken."_s};
    const Arguments arguments(command, words.sliced(1), {u"--demo"_s}, {});
    return ChangeWatcher{static_cast<Change>(change),
                         watcherId(arguments.word(u"nummeret på en overvåker"_s))};
}

CommandAnswer ListWatchers::run(const DataContext& context) const {
    const auto watchers = context.database.watchers().listSearches();
    const auto hits = context.database.offers().activeMatchCounts();
    CommandAnswer answer;
    answer.err = whatIsWrong(context.database);
    if (json) {
        QJsonArray list;
        for (const Search& watcher : watchers)
            list.append(::json(watcher, hits.value(watcher.id)));
        answer.out = QJsonDocument(list).toJson(QJsonDocument::Compact) + '\n';
        return answer;
    }
    for (const Search& watcher : watchers) {
        const QString text = line(watcher, hits.value(watcher.id), context.clock.now());
        answer.out += printable(text).toUtf8() + '\n';
    }
    if (watchers.isEmpty())
        answer.out = u"Ingen overvåkere ennå. «tindra watchers add» lager en.\n"_s.toUtf8();
    return answer;
}

CommandAnswer AddWatcher::run(const DataContext& context) const {
    if (watcher.dateTo < context.clock.today())
        return {ExitCode::wrongUsage, {}, u"Datoene i «--out» er forbi.\n"_s};
    Database& database = context.database;
    qint64 id = 0;
    if (!database.transaction([&] { id = database.watchers().addSearch(watcher); }))
        return {ExitCode::failed, {}, whatIsWrong(database)};
    return {ExitCode::done,
            u"Overvåker %1 er lagret, og sjekkes i neste runde.\n"_s.arg(id).toUtf8(),
            unknownCodes(watcher)};
}

CommandAnswer ChangeWatcher::run(const DataContext& context) const {
    Database& database = context.database;
    const auto all = database.watchers().listSearches();
    const auto found =
        std::find_if(all.begin(), all.end(), [this](const Search& one) { return one.id == id; });
    if (found == all.end())
        return database.problem() ? CommandAnswer{ExitCode::failed, {}, whatIsWrong(database)}
                                  : noSuchWatcher(id);
    const bool isStored = database.transaction([&] {
        if (change == Change::remove)
            database.watchers().deleteSearch(id);
        else if (found->enabled != (change == Change::resume))
            database.watchers().toggleSearch(id);
    });
    if (!isStored)
        return {ExitCode::failed, {}, whatIsWrong(database)};
    const QString text = change == Change::remove  ? u"Overvåker %1 er fjernet, med sine treff.\n"_s
                         : change == Change::pause ? u"Overvåker %1 er satt på pause.\n"_s
                                                   : u"Overvåker %1 er i gang igjen.\n"_s;
    return {ExitCode::done, text.arg(id).toUtf8(), {}};
}

qint64 watcherId(const QString& text) {
    bool isNumber = false;
    const qint64 id = text.toLongLong(&isNumber);
    if (!isNumber || id < 1)
        throw Err{u"«%1» er ikke nummeret på en overvåker. «tindra watchers list» viser dem."_s.arg(
            text.simplified())};
    return id;
}

bool hasWatcher(Database& database, qint64 id) {
    const auto all = database.watchers().listSearches();
    return std::any_of(all.begin(), all.end(), [id](const Search& one) { return one.id == id; });
}

CommandAnswer noSuchWatcher(qint64 id) {
    return {ExitCode::wrongUsage,
            {},
            u"Det finnes ingen overvåker %1. «tindra watchers list» viser dem.\n"_s.arg(id)};
}

QString whatIsWrong(Database& database) {
    QString lines;
    if (const auto& problem = database.problem())
        lines += *problem + u'\n';
    if (const auto notice = database.notice())
        lines += *notice + u'\n';
    return lines;
}
