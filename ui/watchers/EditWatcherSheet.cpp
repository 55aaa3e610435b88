// SPDX-License-Identifier: MIT
#include "ui/watchers/EditWatcherSheet.h"

#include "core/WatcherStore.h"
#include "ui/watchers/WatcherCard.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int usualDays = 60;

} // namespace

EditedWindows EditedWindows::of(const Search& watcher, QDate today) {
    EditedWindows windows;
    const auto orElse = [](QDate date, QDate other) { return date.isValid() ? date : other; };
    windows.dateFrom = orElse(watcher.dateFrom, today);
    windows.dateTo = orElse(watcher.dateTo, windows.dateFrom.addDays(usualDays));
    windows.retFrom = orElse(watcher.returnDateFrom, windows.dateFrom);
    windows.retTo = orElse(watcher.returnDateTo, windows.retFrom.addDays(usualDays));
    return windows;
}

EditedWindows EditedWindows::moved(const Search& watcher, QDate today) {
    Search closed = watcher;
    if (!closed.dateTo.isValid())
        closed.dateTo = closed.dateFrom;
    if (!closed.returnDateTo.isValid())
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
    , m_minSeats(WatcherForm::seats(original.minSeats))
    , m_maxStops(WatcherForm::stops(original.maxStops))
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
    m_minSeats = WatcherForm::seats(seats);
    Q_EMIT changed();
}

void EditWatcherSheet::setMaxStops(int stops) {
    m_maxStops = WatcherForm::stops(stops);
    Q_EMIT changed();
}

bool EditWatcherSheet::canSave() const {
    return form().isComplete();
}

WatcherForm EditWatcherSheet::form() const {
    WatcherForm form{
        m_name,     m_origin.code(), m_destination.code(), m_cabins.cabins(),
        m_minSeats, m_maxStops,      m_includePartners,    {m_outbound.from(), m_outbound.to()},
        {}};
    if (m_roundTrip)
        form.home = {m_homebound.from(), m_homebound.to()};
    return form;
}

Search EditWatcherSheet::edited() const {
    return form().applied(m_original);
}

void EditWatcherSheet::save() {
    if (!canSave())
        return;
    if (m_store.updateSearch(edited())) {
        Q_EMIT finished();
        return;
    }
    m_problem = u"Endringene kunne ikke lagres. Prøv igjen."_s;
    Q_EMIT changed();
}
