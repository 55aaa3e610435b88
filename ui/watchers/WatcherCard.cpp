// SPDX-License-Identifier: MIT
#include "ui/watchers/WatcherCard.h"

#include "core/DateFmt.h"
#include "core/Norwegian.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// Letters that a dialog's title has room for.
constexpr qsizetype longestQuote = 80;

QString pretty(const QString& codes) {
    return codes.split(u',', Qt::SkipEmptyParts).join(u", "_s);
}

QString window(const QString& label, QDate from, QDate to) {
    if (!from.isValid() && !to.isValid())
        return {};
    return label + u' ' + DateFmt::shortDate(from) + u" – "_s + DateFmt::shortDate(to);
}

} // namespace

WatcherCard WatcherCard::of(const Search& search, int hits, const Clock& clock) {
    QString status = u"Pauset"_s;
    if (search.enabled)
        status = search.lastChecked ? u"Sjekket "_s + DateFmt::ago(search.lastChecked, clock.now())
                                    : u"Ikke sjekket enda"_s;
    return {search, hits, std::move(status), search.isPast(clock.today())};
}

QString WatcherCard::title() const {
    return search.displayName().replace(u'\n', u' ');
}

QString WatcherCard::prettyDests() const {
    return pretty(search.destination);
}

QString WatcherCard::cabinsLabel() const {
    QStringList labels;
    for (const Cabin cabin : search.cabins)
        labels.append(label(cabin));
    labels.sort();
    return labels.join(u" · "_s);
}

QString WatcherCard::source() const {
    return search.includePartners ? u"SAS + PARTNERE"_s : u"SAS"_s;
}

QString WatcherCard::route() const {
    return pretty(search.origin) + (search.isRoundTrip() ? u" ⇄ "_s : u" → "_s) + prettyDests();
}

QString WatcherCard::outbound() const {
    return window(u"Ut"_s, search.dateFrom, search.dateTo);
}

QString WatcherCard::homebound() const {
    return window(u"Hjem"_s, search.returnDateFrom, search.returnDateTo);
}

QString WatcherCard::hitsText() const {
    return Norwegian::number(hits) + u" treff"_s;
}

QString WatcherCard::quotedTitle() const {
    const QString whole = title();
    return whole.size() > longestQuote ? whole.first(longestQuote - 1) + u'…' : whole;
}
