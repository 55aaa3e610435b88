// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "core/Database.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "sharing/Community.h"
#include "sharing/OthersFinds.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/FakeLegFetcher.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/ManualClock.h"

#include <QTemporaryDir>

/// A whole application without a window, an airline or a network: real storage in a folder of its
/// own, everything outside faked. The clock stands at noon of 15 January 2027, UTC.
struct AppWorld {
    QTemporaryDir dir;
    ManualClock clock;
    Database database{dir.path(), clock};
    FakeNotificationCenter center;
    Notifier notifier{database, center, clock};
    FakeLegFetcher airline;
    Worker worker{database, airline, notifier, clock};
    FakeHttpSession http;
    Community community{database.settings(), http, clock, Site{},
                        QStringLiteral("https://community.test")};
    OthersFinds finds{database, community, notifier, clock};
    AppState state{database, worker, finds, clock};

    AppWorld() = default;
    ~AppWorld() {
        // A long round takes more turns than one `settle` gives it.
        for (int i = 0; i == 0 || (worker.isRunning() && i < 20); ++i)
            settle();
    }
    Q_DISABLE_COPY_MOVE(AppWorld)

    /// Stores a watcher OSL to `destination` and returns it as stored.
    Search addWatcher(const QString& destination = QStringLiteral("EWR"),
                      const std::function<void(Search&)>& change = {}) {
        Search search;
        search.origin = QStringLiteral("OSL");
        search.destination = destination;
        search.dateFrom = QDate(2027, 3, 1);
        search.dateTo = QDate(2027, 3, 31);
        if (change)
            change(search);
        database.watchers().addSearch(search);
        settle();
        return state.searches().constLast();
    }

    /// Stores the record that watcher 1's fare has gone, just now, and waits until it is shown.
    void addSoldOut(const QString& key = QStringLiteral("2027-03-05-OSL-EWR-SK907"),
                    const std::function<void(SoldOut&)>& change = {}) {
        SoldOut record{0, 1, FareKey::fromText(key), {Cabin::business}, key, clock.now()};
        if (change)
            change(record);
        database.offers().recordSoldOut(record);
        settle();
    }

    /// Stores an offer, found just now for watcher 1, and waits likewise.
    Match addMatch(const std::function<void(Match&)>& change = {}) {
        Match match;
        match.searchId = 1;
        match.key = FareKey::fromText(QStringLiteral("2027-03-05-OSL-EWR-SK907"));
        match.fromCity = QStringLiteral("Oslo");
        match.toCity = QStringLiteral("New York");
        match.depart = LocalTime::fromText(QStringLiteral("05.03 11:00"), {2027, 3, 1});
        match.arrive = LocalTime::fromText(QStringLiteral("05.03 13:10"), {2027, 3, 1});
        match.stops = Stops();
        match.durationMinutes = 490;
        match.cabin = Cabin::business;
        match.seats = 2;
        match.points = 60000;
        match.bookingURL = QStringLiteral("https://www.sas.no/book/flights/?search=OW_OSL-EWR");
        match.foundAt = clock.now();
        if (change)
            change(match);
        match.id = database.offers().recordMatch(match);
        settle();
        return match;
    }
};
