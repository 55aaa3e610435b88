// SPDX-License-Identifier: MIT
#include "screens/Screen.h"
#include "tests/ui/window/WindowWorld.h"

using namespace Qt::StringLiterals;

namespace {

WindowWorld& show(Shot& shot, const std::function<void(WindowWorld&)>& build = {},
                  bool isDemo = false) {
    auto& world = shot.make<WindowWorld>(isDemo);
    if (build)
        build(world);
    shot.show(u"Tindra.Window"_s, u"MainContent"_s, world.content());
    return world;
}

void hunting(WindowWorld& world) {
    for (const QString& destination : {u"EWR, BOS"_s, u"BKK"_s, u"LHR"_s, u"NRT"_s, u"SFO"_s}) {
        world.addWatcher(destination, [](Search& search) {
            search.returnDateFrom = u"2027-04-01"_s;
            search.returnDateTo = u"2027-04-20"_s;
        });
    }
    world.database.toggleSearch(4);
    world.database.toggleSearch(5);
    for (int i = 0; i < 4; ++i) {
        world.addMatch([i](Match& match) {
            match.key += QString::number(i);
            match.seats = 1 + i;
        });
    }
    world.lastPollWas(1284);
    world.session.setLoginStatus(SASLoginStatus::loggedIn(world.clock.now()));
}

void withErrors(WindowWorld& world) {
    hunting(world);
    world.lastPollWas(1284, {u"søk 3: SAS-søk krever avreisedato."_s});
}

const Screen usual(u"window-dashboard"_s, [](Shot& shot) { show(shot, hunting); });
const Screen fresh(u"window-fresh"_s, [](Shot& shot) { show(shot); });
const Screen errors(u"window-errors"_s, {1120, 880}, [](Shot& shot) { show(shot, withErrors); });
const Screen demo(u"window-demo"_s, {880, 600}, [](Shot& shot) { show(shot, hunting, true); });

const Screen signedOut(u"window-signed-out"_s, [](Shot& shot) {
    show(shot, [](WindowWorld& world) {
        hunting(world);
        world.session.setLoggedOut(false);
    });
});

const Screen asking(u"window-closing"_s, {880, 600}, [](Shot& shot) {
    auto& world = show(shot, hunting);
    world.tray.isThere = false;
    world.life.closeWindow();
    Q_EMIT world.tray.availabilityChanged();
    world.life.closeWindow();
});

const Screen hits(u"window-hits"_s, {1120, 880},
                  [](Shot& shot) { show(shot, hunting).root.select(RootView::Hits); });
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

const Screen panelHunting(u"panel"_s, {320, 220}, [](Shot& shot) { panel(shot, hunting); });
const Screen panelIdle(u"panel-idle"_s, {320, 120}, [](Shot& shot) { panel(shot, [](auto&) {}); });
const Screen panelUnreachable(u"panel-unreachable"_s, {320, 250}, [](Shot& shot) {
    panel(shot, [](WindowWorld& world) {
        hunting(world);
        world.session.setSiteUnreachable(true);
    });
});
const Screen panelSignedOut(u"panel-signed-out"_s, {320, 250}, [](Shot& shot) {
    panel(shot, [](WindowWorld& world) {
        hunting(world);
        world.session.setLoggedOut(false);
    });
});

} // namespace
