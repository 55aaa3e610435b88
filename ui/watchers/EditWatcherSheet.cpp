// SPDX-License-Identifier: MIT
#include "ui/watchers/EditWatcherSheet.h"

#include "core/DateFmt.h"
#include "core/Text.h"
#include "core/WatcherStore.h"
#include "ui/search/CodeList.h"
#include "ui/watchers/WatcherCard.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int usualDays = 60;

} // namespace

EditedWindows EditedWindows::of(const Search& watcher, QDate today) {
    EditedWindows windows;
    windows.dateFrom = DateFmt::parseIso(watcher.dateFrom).value_or(today);
    windows.dateTo =
        DateFmt::parseIso(watcher.dateTo).value_or(windows.dateFrom.addDays(usualDays));
    windows.retFrom = DateFmt::parseIso(watcher.returnDateFrom).value_or(windows.dateFrom);
    windows.retTo =
        DateFmt::parseIso(watcher.returnDateTo).value_or(windows.retFrom.addDays(usualDays));
    return windows;
}

EditedWindows EditedWindows::moved(const Search& watcher, QDate today) {
    Search closed = watcher;
    if (closed.dateTo.isEmpty())
        closed.dateTo = closed.dateFrom;
    if (closed.returnDateTo.isEmpty())
        closed.returnDateTo = closed.returnDateFrom;
    EditedWindows windows = of(closed, today);
    const qint64 days = windows.dateFrom.daysTo(today);
    for (QDate* date : {&windows.dateFrom, &windows.dateTo, &windows.retFrom, &windows.retTo})
        *date = date->addDays(days);
    return windows;
}

EditWatcherSheet::EditWatcherSheet(WatcherStore& store, const Clock& clock, const Search& original,
                                   const EditedWindows& windows, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_original(original)
    , m_name(original.name)
    , m_cabins(original.cabins)
    , m_minSeats(std::clamp(original.minSeats, 1, Search::mostSeats))
    , m_maxStops(std::clamp(original.maxStops, 0, Search::mostStops))
    , m_includePartners(original.includePartners)
    , m_roundTrip(original.isRoundTrip())
    , m_outbound(u"AVREISE-VINDU"_s, clock)
    , m_homebound(u"HJEMREISE-VINDU"_s, clock) {
    m_origin.setCode(original.origin);
    m_destination.setCode(original.destination);
    m_outbound.setWindow(windows.dateFrom, windows.dateTo);
    m_homebound.setWindow(windows.retFrom, windows.retTo);
    connect(&m_origin, &AirportField::codeChanged, this, &EditWatcherSheet::changed);
    connect(&m_destination, &AirportField::codeChanged, this, &EditWatcherSheet::changed);
}

QString EditWatcherSheet::title() const {
    return u"Rediger «%1»"_s.arg(WatcherCard{m_original, 0, {}}.quotedTitle());
}

void EditWatcherSheet::setMinSeats(int seats) {
    m_minSeats = std::clamp(seats, 1, Search::mostSeats);
    Q_EMIT changed();
}

void EditWatcherSheet::setMaxStops(int stops) {
    m_maxStops = std::clamp(stops, 0, Search::mostStops);
    Q_EMIT changed();
}

bool EditWatcherSheet::canSave() const {
    return !trimmedBlanks(m_origin.code()).isEmpty() &&
           !trimmedBlanks(m_destination.code()).isEmpty();
}

Search EditWatcherSheet::edited() const {
    Search search = m_original;
    search.name = m_name;
    search.origin = CodeList::stored(m_origin.code());
    search.destination = CodeList::stored(m_destination.code());
    search.cabins = m_cabins.cabinsToStore();
    search.minSeats = m_minSeats;
    search.maxStops = m_maxStops;
    search.includePartners = m_includePartners;
    search.dateFrom = DateFmt::iso(m_outbound.from());
    search.dateTo = DateFmt::iso(m_outbound.to());
    search.returnDateFrom = m_roundTrip ? DateFmt::iso(m_homebound.from()) : QString();
    search.returnDateTo = m_roundTrip ? DateFmt::iso(m_homebound.to()) : QString();
    return search;
}

void EditWatcherSheet::save() {
    if (!canSave())
        return;
    m_store.updateSearch(edited());
    Q_EMIT finished();
}
