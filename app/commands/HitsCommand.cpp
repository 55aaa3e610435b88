// SPDX-License-Identifier: MIT
#include "app/commands/HitsCommand.h"

#include "app/MatchOutput.h"
#include "app/MatchTable.h"
#include "app/commands/Arguments.h"
#include "app/commands/WatchersCommand.h"
#include "core/Database.h"
#include "core/Err.h"

#include <limits>

using namespace Qt::StringLiterals;

ListHits ListHits::parse(const QStringList& words) {
    const Arguments arguments(u"tindra hits"_s, words,
                              {u"--demo"_s, u"--json"_s, u"--csv"_s, u"--all"_s}, {u"--watcher"_s});
    arguments.noWords();
    ListHits command;
    if (arguments.has(u"--json"_s) && arguments.has(u"--csv"_s))
        throw Err{u"Velg enten «--json» eller «--csv». «tindra --help» viser bruken."_s};
    if (arguments.has(u"--json"_s))
        command.format = Format::json;
    if (arguments.has(u"--csv"_s))
        command.format = Format::csv;
    command.withSoldOut = arguments.has(u"--all"_s);
    if (const auto id = arguments.value(u"--watcher"_s))
        command.watcher = watcherId(*id);
    return command;
}

CommandAnswer ListHits::run(const DataContext& context) const {
    if (watcher && !hasWatcher(context.database, *watcher))
        return noSuchWatcher(*watcher);
    QList<Hit> hits = context.database.offers().recentMatches(std::numeric_limits<int>::max());
    hits.removeIf([this](const Hit& hit) {
        return (Hits::isSoldOut(hit) && !withSoldOut) ||
               (watcher && Hits::searchId(hit) != *watcher);
    });
    CommandAnswer answer;
    answer.err = whatIsWrong(context.database);
    if (format == Format::json) {
        answer.out = MatchOutput::json(hits) + '\n';
    } else if (format == Format::csv) {
        answer.out = MatchTable::csv(hits, context.site);
    } else {
        for (const Hit& hit : std::as_const(hits))
            answer.out += printable(MatchOutput::line(hit)).toUtf8() + '\n';
        if (hits.isEmpty())
            answer.out = u"Ingen treff ennå.\n"_s.toUtf8();
    }
    return answer;
}
