// SPDX-License-Identifier: MIT
// How long the screens' state takes to be loaded.
#include "bench/Results.h"
#include "core/DatabaseCopies.h"
#include "tests/support/AppWorld.h"

#include <QElapsedTimer>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

constexpr int stateWatchers = 200;
constexpr int stateOffers = 2000;
constexpr int reloads = 20;

void fillState(AppWorld& world) {
    world.database.transaction([&world] {
        for (int i = 0; i < stateWatchers; ++i) {
            Search search;
            search.name = u"Overvåker %1"_s.arg(i);
            search.origin = u"OSL, BGO"_s;
            search.destination = u"EWR, JFK, BOS"_s;
            search.dateFrom = QDate(2027, 3, 1);
            search.dateTo = QDate(2027, 3, 31);
            search.returnDateTo = QDate(2027, 4, 30);
            world.database.watchers().addSearch(search);
        }
    });
    Match match = world.addMatch();
    world.database.transaction([&world, &match] {
        for (int i = 1; i < stateOffers; ++i) {
            match.searchId = 1 + i % stateWatchers;
            match.key.flights = u"SK%1"_s.arg(i);
            match.foundAt += std::chrono::seconds(1);
            world.database.offers().recordMatch(match);
        }
    });
}

/// A good database of a long life is opened and copied.
QList<Result> measureOpening() {
    constexpr int seenFares = 100'000;
    AppWorld world;
    fillState(world);
    world.database.transaction([&world] {
        for (int i = 0; i < seenFares; ++i)
            world.database.seen().upsertSeen(
                1 + i % stateWatchers, {{2027, 3, 5}, {u"OSL"_s, u"EWR"_s}, u"SK%1"_s.arg(i)},
                {{Cabin::business}, u"OSL-EWR 2027-03-05 · SK%1"_s.arg(i)});
    });
    const auto best = [](int times, const std::function<void()>& work) {
        qint64 shortest = std::numeric_limits<qint64>::max();
        for (int i = 0; i < times; ++i) {
            QElapsedTimer timer;
            timer.start();
            work();
            shortest = std::min(shortest, timer.nsecsElapsed());
        }
        return static_cast<double>(shortest) / 1e6;
    };
    const double opening =
        best(5, [&world] { const Database again(world.dir.path(), world.clock); });
    const double copying =
        best(3, [&world] { world.database.copyTo(world.dir.path() + u"/copy"_s); });
    // What the main thread has of the day's copy: the call, and storing while it is made.
    QElapsedTimer timer;
    timer.start();
    world.database.keepDailyCopy();
    const double call = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    const QString copy = DatabaseCopies::daily(world.dir.path(), world.clock.today());
    double meanwhile = 0;
    int stores = 0;
    for (; !QFile::exists(copy) && stores < 10'000; ++stores)
        meanwhile =
            std::max(meanwhile, best(1, [&world] { world.database.watchers().markChecked(1, 1); }));
    double otherwise = 0;
    for (int i = 0; i < stores; ++i)
        otherwise =
            std::max(otherwise, best(1, [&world] { world.database.watchers().markChecked(1, 1); }));
    const QString ms = u"%1 ms"_s;
    return {{u"Database: opened and checked, 100,000 seen fares"_s, ms.arg(opening, 0, 'f', 0),
             u"< 150 ms"_s, opening < 150},
            {u"Database: a copy, 100,000 seen fares"_s, ms.arg(copying, 0, 'f', 0), u"< 500 ms"_s,
             copying < 500},
            {u"the copy of a day: its call; the longest of %1 stores meanwhile; without it"_s.arg(
                 stores),
             u"%1 ms; %2 ms; %3 ms"_s.arg(call, 0, 'f', 1)
                 .arg(meanwhile, 0, 'f', 1)
                 .arg(otherwise, 0, 'f', 1),
             u"< 16 ms"_s, std::max(call, meanwhile) < 16}};
}

} // namespace

QList<Result> measureState() {
    AppWorld world;
    fillState(world);
    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < reloads; ++i) {
        // Something has changed each time, as after a round.
        world.database.watchers().markChecked(1, i);
        QElapsedTimer timer;
        timer.start();
        world.state.reload();
        best = std::min(best, timer.nsecsElapsed());
    }
    const double milliseconds = static_cast<double>(best) / 1e6;
    const bool isWhole = world.state.matches().size() == stateOffers;
    return QList<Result>{{u"AppState.reload() with 2,000 offers and 200 watchers"_s,
                          u"%1 ms"_s.arg(milliseconds, 0, 'f', 1), u"< 8 ms"_s,
                          isWhole && milliseconds < 8}} +
           measureOpening();
}
