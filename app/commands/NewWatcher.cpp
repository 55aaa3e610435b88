// SPDX-License-Identifier: MIT
#include "app/commands/NewWatcher.h"

#include "app/commands/Arguments.h"
#include "core/DateFmt.h"
#include "core/Err.h"
#include "core/WatcherForm.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

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

WatcherForm::Window window(const QString& option, const QString& text) {
    const qsizetype dots = text.indexOf(u".."_s);
    const auto from = DateFmt::parseIso(dots < 0 ? text : text.left(dots));
    const auto to = dots < 0 ? from : DateFmt::parseIso(text.mid(dots + 2));
    if (!from || !to)
        throw Err{
            u"«%1 %2»: skriv en dato som 2027-03-01, eller to som 2027-03-01..2027-03-31."_s.arg(
                option, text.simplified())};
    if (*from > *to)
        throw Err{u"«%1 %2» slutter før den begynner."_s.arg(option, text)};
    if (from->daysTo(*to) >= WatcherForm::mostDays)
        throw Err{
            u"«%1 %2» er for lang: høyst %3 dager."_s.arg(option, text).arg(WatcherForm::mostDays)};
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
        cabins.insert(*named);
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
    WatcherForm form;
    form.origin = origins.join(u',');
    form.destination = destinations.join(u',');
    form.out = window(u"--out"_s, arguments.required(u"--out"_s));
    if (const auto text = arguments.value(u"--back"_s)) {
        form.home = window(u"--back"_s, *text);
        if (form.home.to < form.out.from)
            throw Err{u"Hjemreisen («--back») er før utreisen («--out»)."_s};
    }
    if (const auto text = arguments.value(u"--cabins"_s))
        form.cabins = cabins(*text);
    form.minSeats = arguments.number(u"--seats"_s, WatcherForm::fewestSeats, WatcherForm::mostSeats,
                                     form.minSeats);
    form.maxStops = arguments.number(u"--stops"_s, 0, WatcherForm::mostStops, form.maxStops);
    form.includePartners = arguments.has(u"--partners"_s);
    form.name = arguments.value(u"--name"_s)
                    .value_or(QString())
                    .simplified()
                    .left(WatcherForm::longestName);
    return form.applied();
}
