// SPDX-License-Identifier: MIT
#include "app/commands/NewWatcher.h"

#include "app/commands/Arguments.h"
#include "core/DateFmt.h"
#include "core/Err.h"
#include "polling/Legs.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int longestName = 100;

QStringList pieces(const QString& text) {
    QStringList pieces = text.split(u',', Qt::SkipEmptyParts);
    for (QString& piece : pieces)
        piece = piece.trimmed();
    pieces.removeAll(QString());
    pieces.removeDuplicates();
    return pieces;
}

QStringList airportCodes(const Arguments& arguments, const QString& option) {
    const QStringList codes = pieces(arguments.required(option).toUpper());
    for (const QString& code : codes) {
        if (code.size() != 3 ||
            !std::all_of(code.begin(), code.end(), [](QChar c) { return c >= u'A' && c <= u'Z'; }))
            throw Err{u"«%1»: «%2» er ikke en flyplasskode på tre bokstaver, som OSL."_s.arg(
                option, code.simplified())};
    }
    if (codes.isEmpty())
        throw Err{u"«%1» mangler flyplasskoder, som OSL,BGO."_s.arg(option)};
    return codes;
}

struct Window {
    QDate from;
    QDate to;
};

Window window(const QString& option, const QString& text) {
    const qsizetype dots = text.indexOf(u".."_s);
    const auto from = DateFmt::parseIso(dots < 0 ? text : text.left(dots));
    const auto to = dots < 0 ? from : DateFmt::parseIso(text.mid(dots + 2));
    if (!from || !to)
        throw Err{
            u"«%1 %2»: skriv en dato som 2027-03-01, eller to som 2027-03-01..2027-03-31."_s.arg(
                option, text.simplified())};
    if (*from > *to)
        throw Err{u"«%1 %2» slutter før den begynner."_s.arg(option, text)};
    if (from->daysTo(*to) >= Legs::datesPerWindow)
        throw Err{
            u"«%1 %2» er for lang: høyst %3 dager."_s.arg(option, text).arg(Legs::datesPerWindow)};
    return {*from, *to};
}

CabinSet cabins(const QString& text) {
    CabinSet cabins;
    for (const QString& piece : pieces(text.toLower())) {
        const auto named = std::find_if(allCabins.begin(), allCabins.end(), [&piece](Cabin cabin) {
            return piece == rawValue(cabin) || piece == label(cabin).toLower();
        });
        if (named == allCabins.end())
            throw Err{u"Ukjent kabin «%1». Velg blant economy, premeco, business og first."_s.arg(
                piece.simplified())};
        cabins.insert(rawValue(*named));
    }
    if (cabins.isEmpty())
        throw Err{u"«--cabins» mangler kabiner, som business,first."_s};
    return cabins;
}

} // namespace

Search parseNewWatcher(const QStringList& words) {
    const Arguments arguments(u"tindra watchers add"_s, words, {u"--demo"_s, u"--partners"_s},
                              {u"--from"_s, u"--to"_s, u"--out"_s, u"--back"_s, u"--cabins"_s,
                               u"--seats"_s, u"--stops"_s, u"--name"_s});
    arguments.noWords();
    const QStringList origins = airportCodes(arguments, u"--from"_s);
    const QStringList destinations = airportCodes(arguments, u"--to"_s);
    for (const QString& code : origins) {
        if (destinations.contains(code))
            throw Err{u"%1 står både i «--from» og «--to»."_s.arg(code)};
    }
    Search watcher;
    watcher.origin = origins.join(u',');
    watcher.destination = destinations.join(u',');
    const Window out = window(u"--out"_s, arguments.required(u"--out"_s));
    watcher.dateFrom = DateFmt::iso(out.from);
    watcher.dateTo = DateFmt::iso(out.to);
    if (const auto text = arguments.value(u"--back"_s)) {
        const Window back = window(u"--back"_s, *text);
        if (back.to < out.from)
            throw Err{u"Hjemreisen («--back») er før utreisen («--out»)."_s};
        watcher.returnDateFrom = DateFmt::iso(back.from);
        watcher.returnDateTo = DateFmt::iso(back.to);
    }
    if (const auto text = arguments.value(u"--cabins"_s))
        watcher.cabins = cabins(*text);
    watcher.minSeats = arguments.number(u"--seats"_s, 1, Search::mostSeats, watcher.minSeats);
    watcher.maxStops = arguments.number(u"--stops"_s, 0, Search::mostStops, watcher.maxStops);
    watcher.includePartners = arguments.has(u"--partners"_s);
    watcher.name = arguments.value(u"--name"_s).value_or(QString()).simplified().left(longestName);
    return watcher;
}
