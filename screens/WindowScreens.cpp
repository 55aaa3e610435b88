// SPDX-License-Identifier: MIT
#include "core/DateFmt.h"
#include "screens/Screen.h"
#include "tests/support/RawSql.h"
#include "tests/ui/window/WindowWorld.h"

using namespace Qt::StringLiterals;

namespace windowScreens {

WindowWorld& show(Shot& shot, const std::function<void(WindowWorld&)>& build = {},
                  bool isDemo = false) {
    auto& world = shot.make<WindowWorld>(isDemo);
    if (build)
        build(world);
    shot.show(u"Tindra.Window"_s, u"MainContent"_s, world.content());
    return world;
}

void addWatcher(WindowWorld& world, const QString& name, const QString& origin,
                const QString& destination, bool isOn = true) {
    const Search stored = world.addWatcher(destination, [&](Search& search) {
        search.name = name;
        search.origin = origin;
        search.includePartners = origin.contains(u',');
        search.returnDateFrom = QDate(2027, 3, 8);
        search.returnDateTo = QDate(2027, 4, 10);
    });
    if (isOn)
        world.database.watchers().markChecked(stored.id, 1);
    else
        world.database.watchers().toggleSearch(stored.id);
}

void addOffer(WindowWorld& world, const QString& route, const QString& cities, int day,
              double hoursAgo, const std::function<void(Match&)>& change = {}) {
    world.addMatch([&](Match& match) {
        const QDate date(2027, 3, day);
        match.key = {date, Route::fromText(route), u"SK%1"_s.arg(900 + day)};
        match.fromCity = cities.section(u'-', 0, 0);
        match.toCity = cities.section(u'-', 1);
        match.depart = {date, {11, 5}};
        match.arrive = {date, {13, 20}};
        match.durationMinutes = 495;
        match.seats = 1 + day % 4;
        match.points = 60000 + 5000 * (day % 3);
        match.foundAt = world.clock.now() - Ticks(hoursAgo * 3600);
        if (change)
            change(match);
    });
}

void addGone(WindowWorld& world, const QString& route, int day, double hoursAgo) {
    const FareKey key{{2027, 3, day}, Route::fromText(route), u"SK%1"_s.arg(900 + day)};
    world.addSoldOut(key.text(), [&](SoldOut& record) {
        record.label = u"%1 %2 · %3"_s.arg(route, DateFmt::iso(key.date), key.flights);
        record.foundAt = world.clock.now() - Ticks(hoursAgo * 3600);
    });
}

void overnight(Match& match) {
    match.depart = {match.travelDate(), {17, 40}};
    match.arrive = {match.travelDate().addDays(1), {7, 15}};
    match.key.flights += u",SK1484"_s;
    match.stops = {1, {u"CPH"_s}};
}

void hunting(WindowWorld& world) {
    addWatcher(world, u"USA i business"_s, u"OSL,CPH"_s, u"EWR,JFK,BOS,LAX"_s);
    addWatcher(world, u"Asia i business"_s, u"CPH"_s, u"BKK,HND,SIN"_s);
    addWatcher(world, {}, u"BGO"_s, u"LHR"_s);
    addWatcher(world, u"Høstferie"_s, u"OSL"_s, u"SFO"_s, false);
    addWatcher(world, u"Jul hos mormor"_s, u"OSL"_s, u"LPA"_s, false);
    addOffer(world, u"CPH-LAX"_s, u"København-Los Angeles"_s, 12, 70);
    const auto ofAsia = [](Match& match) { match.searchId = 2; };
    addOffer(world, u"CPH-BKK"_s, u"København-Bangkok"_s, 3, 50, ofAsia);
    addOffer(world, u"CPH-HND"_s, u"København-Tokyo"_s, 15, 40, ofAsia);
    addGone(world, u"OSL-EWR"_s, 4, 30);
    addOffer(world, u"OSL-EWR"_s, u"Oslo-New York"_s, 9, 2.8);
    addOffer(world, u"EWR-OSL"_s, u"New York-Oslo"_s, 21, 0.8, overnight);
    addOffer(world, u"JFK-OSL"_s, u"New York-Oslo"_s, 25, 7, [](Match& match) {
        overnight(match);
        match.searchId = Match::communitySearchId;
    });
    addOffer(world, u"OSL-JFK"_s, u"Oslo-New York"_s, 11, 0.2);
    world.lastPollWas(1284);
    world.session.setLoginStatus(SASLoginStatus::loggedIn(world.clock.now()));
    world.clock.advance(std::chrono::minutes(4));
}

void withErrors(WindowWorld& world) {
    hunting(world);
    world.lastPollWas(1284, {u"søk 3: SAS-søk krever avreisedato."_s});
}

const Screen usual(u"window-dashboard"_s, [](Shot& shot) { show(shot, hunting); });
const Screen fresh(u"window-fresh"_s, [](Shot& shot) { show(shot); });
const Screen errors(u"window-errors"_s, {1120, 880}, [](Shot& shot) { show(shot, withErrors); });
const Screen demo(u"window-demo"_s, {880, 600}, [](Shot& shot) { show(shot, hunting, true); });

const Screen notice(u"window-notice"_s, {880, 600}, [](Shot& shot) {
    show(shot, [](WindowWorld& world) {
        world.database.safekeeping().set(
            Kept::storageNotice,
            u"Databasen var skadet, og er satt til side som tindra-damaged-20270115.sqlite. "
            "Kopien tindra-daily-20270114.sqlite er tatt i bruk. Det som er kommet "
            "til siden den ble tatt, mangler."_s);
        hunting(world);
    }).root.select(RootView::Watchers);
});
const Screen full(u"window-full-disk"_s, {880, 600}, [](Shot& shot) {
    show(
        shot,
        [](WindowWorld& world) {
            hunting(world);
            runOn(world.dir.path(), "CREATE TRIGGER full BEFORE INSERT ON kv "
                                    "BEGIN SELECT RAISE(ABORT, 'disken er full'); END");
            world.database.safekeeping().note(Kept::toldBackground);
        },
        true)
        .root.select(RootView::Settings);
    settle();
});

const Screen signedOut(u"window-signed-out"_s, [](Shot& shot) {
    show(shot, [](WindowWorld& world) {
        hunting(world);
        world.session.setLoggedOut(false);
    });
});

const Screen refused(u"window-refused"_s, [](Shot& shot) {
    show(shot, [](WindowWorld& world) {
        hunting(world);
        world.standBack.refuse({}, 429);
        world.lastPollWas(1284, {u"søk 3: 36 av 40 oppslag fikk ikke svar. SAS ber oss vente til "
                                 "12:15."_s});
    });
});

const Screen asking(u"window-closing"_s, {880, 600}, [](Shot& shot) {
    auto& world = show(shot, hunting);
    world.tray.isThere = false;
    world.life.closeWindow();
    Q_EMIT world.tray.availabilityChanged();
    world.life.closeWindow();
});

const Screen unheard(u"window-closing-unheard"_s, {880, 600}, [](Shot& shot) {
    auto& world = show(shot, hunting);
    world.database.settings().set(Setting::nativeNotify, false);
    world.life.closeWindow();
});

const Screen noWayBack(u"window-closing-for-good"_s, {880, 600}, [](Shot& shot) {
    auto& world = shot.make<WindowWorld>();
    hunting(world);
    world.tray.isThere = false;
    auto& life = shot.make<LifeCycle>(world.tray, world.panel, world.notifier,
                                      world.database.safekeeping(), LifeCycle::SecondStart::isLost);
    auto content = world.content();
    content[u"life"_s] = QVariant::fromValue(&life);
    shot.show(u"Tindra.Window"_s, u"MainContent"_s, content);
    life.closeWindow();
});

const Screen hits(u"window-hits"_s, {1120, 880}, [](Shot& shot) {
    auto& world = show(shot, hunting);
    world.root.select(RootView::Hits);
    world.hits.toggle(u"New York|Oslo"_s);
});
const Screen watchers(u"window-watchers"_s, {1120, 880},
                      [](Shot& shot) { show(shot, hunting).root.select(RootView::Watchers); });
const Screen settings(u"window-settings"_s, {1120, 880}, [](Shot& shot) {
    show(shot, hunting).root.select(RootView::Settings);
    settle();
});

void panel(Shot& shot, const std::function<void(WindowWorld&)>& build) {
    auto& world = shot.make<WindowWorld>();
    build(world);
    shot.show(u"Tindra.Window"_s, u"MenuBarPanel"_s,
              {{u"panel"_s, QVariant::fromValue(&world.panel)}});
}

const Screen panelHunting(u"panel"_s, {320, 210}, [](Shot& shot) { panel(shot, hunting); });
const Screen panelChecking(u"panel-checking"_s, {320, 210}, [](Shot& shot) {
    panel(shot, [](WindowWorld& world) {
        hunting(world);
        world.airline.answer = [](auto&&...) { return std::nullopt; };
        world.airline.heldLookup = 1;
        world.worker.pollOnce();
        settle();
    });
});
const Screen panelIdle(u"panel-idle"_s, {320, 120}, [](Shot& shot) { panel(shot, [](auto&) {}); });
const Screen panelUnreachable(u"panel-unreachable"_s, {320, 250}, [](Shot& shot) {
    panel(shot, [](WindowWorld& world) {
        hunting(world);
        world.session.setSiteUnreachable(true);
    });
});
const Screen panelRefused(u"panel-refused"_s, {320, 250}, [](Shot& shot) {
    panel(shot, [](WindowWorld& world) {
        hunting(world);
        world.standBack.refuse({}, 429);
    });
});
const Screen panelSignedOut(u"panel-signed-out"_s, {320, 250}, [](Shot& shot) {
    panel(shot, [](WindowWorld& world) {
        hunting(world);
        world.session.setLoggedOut(false);
    });
});

} // namespace windowScreens
