// SPDX-License-Identifier: MIT
#include "app/Demo.h"

#include "community/Service.h"
#include "core/DateFmt.h"
#include "core/Err.h"
#include "core/WatcherStore.h"
#include "platform/Clock.h"
#include "standin/StandIn.h"

#include <algorithm>

using namespace Qt::StringLiterals;

struct Demo::Private {
    Private(standin::Options options, const Clock& clock)
        : airline(std::move(options)), hunters(communityOptions(clock)) {}

    static community::Options communityOptions(const Clock& clock) {
        community::Options options;
        options.clock = [&clock] {
            return community::Time(
                std::chrono::floor<std::chrono::milliseconds>(clock.now().time_since_epoch()));
        };
        // What can be booked here is on the stand-in, and all its users are this one.
        options.takesLocalBookings = true;
        options.rateLimit = 0;
        return options;
    }

    standin::StandIn airline;
    community::Service hunters;
};

Demo::Demo(const QString& folder, bool signInRequired, const Clock& clock) {
    standin::Options options;
    options.stateFile = folder + u"/standin.json"_s;
    options.signIn.isRequired = signInRequired;
    options.signIn.isEverybodyKnown = !signInRequired;
    // One round asks 24 legs for offers. In the second, whatever else is watched, the last
    // watcher's are refused, so that people see how that goes; a single round never gets there.
    options.refusal = standin::Refusal{
        .afterOffers = 20, .retryAfter = std::chrono::seconds(60), .countsRepeatsOnly = true};
    options.now = [&clock] { return static_cast<qint64>(secondsSince1970(clock.now())); };
    d = std::make_unique<Private>(std::move(options), clock);
    if (const auto error = d->airline.start())
        throw Err{u"Demoens flyselskap kunne ikke starte: "_s + *error};
    if (const auto error = d->hunters.start())
        throw Err{u"Demoens fellesskap kunne ikke starte: "_s + QString::fromStdString(*error)};
}

Demo::~Demo() = default;

Site Demo::site() const {
    return {d->airline.siteOrigin(), d->airline.siteDomain(), d->airline.idpHost(),
            d->airline.idpDomain()};
}

QString Demo::community() const {
    return QString::fromStdString(d->hunters.address());
}

void Demo::seedWatchers(WatcherStore& store, QDate today) {
    const auto stored = store.listSearches();
    if (std::any_of(stored.begin(), stored.end(),
                    [today](const Search& watcher) { return watcher.dateTo >= today; }))
        return;
    for (const Search& past : stored)
        store.deleteSearch(past.id);
    for (const Search& watcher : watchers(today))
        store.addSearch(watcher);
}

QList<Search> Demo::watchers(QDate today) {
    const auto day = [today](int days) { return today.addDays(days); };
    Search bangkok;
    bangkok.name = u"Bangkok i business"_s;
    bangkok.origin = u"OSL"_s;
    bangkok.destination = u"BKK"_s;
    bangkok.dateFrom = day(60);
    bangkok.dateTo = day(65);
    bangkok.returnDateFrom = day(74);
    bangkok.returnDateTo = day(77);

    Search newYork;
    newYork.name = u"New York med partnere"_s;
    newYork.origin = u"OSL,BGO"_s;
    newYork.destination = u"EWR"_s;
    newYork.cabins = {Cabin::business, Cabin::premeco};
    newYork.dateFrom = day(40);
    newYork.dateTo = day(43);
    newYork.includePartners = true;

    Search london;
    london.origin = u"OSL"_s;
    london.destination = u"LHR"_s;
    london.cabins = {Cabin::economy};
    london.minSeats = 2;
    london.maxStops = 0;
    london.dateFrom = day(25);
    london.dateTo = day(30);
    return {bangkok, newYork, london};
}
