// SPDX-License-Identifier: MIT
#include "core/WatcherForm.h"

#include "core/Text.h"

#include <algorithm>

namespace {

QString storedCodes(const QString& text) {
    return text.toUpper().remove(u' ');
}

} // namespace

int WatcherForm::seats(int wanted) {
    return std::clamp(wanted, fewestSeats, mostSeats);
}

int WatcherForm::stops(int wanted) {
    return std::clamp(wanted, 0, mostStops);
}

bool WatcherForm::isComplete() const {
    return !trimmedBlanks(origin).isEmpty() && !trimmedBlanks(destination).isEmpty();
}

Search WatcherForm::applied(Search stored) const {
    stored.name = name;
    stored.origin = storedCodes(origin);
    stored.destination = storedCodes(destination);
    stored.cabins = cabins.isEmpty() ? usualCabins : cabins;
    stored.minSeats = seats(minSeats);
    stored.maxStops = stops(maxStops);
    stored.includePartners = includePartners;
    stored.dateFrom = out.from;
    stored.dateTo = out.to;
    stored.returnDateFrom = home.from;
    stored.returnDateTo = home.to;
    return stored;
}

WatcherForm WatcherForm::of(const Search& search) {
    return {search.name,
            search.origin,
            search.destination,
            search.cabins,
            seats(search.minSeats),
            stops(search.maxStops),
            search.includePartners,
            {search.dateFrom, search.dateTo},
            {search.returnDateFrom, search.returnDateTo}};
}
