// SPDX-License-Identifier: MIT
// The page "Treff" in its states.
#include "core/DateFmt.h"
#include "screens/Screen.h"
#include "tests/support/AppWorld.h"
#include "tests/support/FakeDesktop.h"
#include "ui/hits/HitsPage.h"

using namespace Qt::StringLiterals;

namespace hitsScreens {

struct World {
    AppWorld app;
    FakeDesktop desktop;
    HitsPage page{app.state, app.database.offers(), desktop, app.clock, Site{}};
    int number = 0;

    World() {
        app.http.answer = [](const HttpRequest&) { return std::nullopt; };
    }

    void add(const QString& route, const QString& from, const QString& to, double hoursAgo,
             const std::function<void(Match&)>& change = {}) {
        Match m;
        m.searchId = 1;
        const QDate date = QDate(2027, 3, 1).addDays(++number);
        m.key = {date, Route::fromText(route), u"SK%1"_s.arg(900 + number)};
        m.fromCity = from;
        m.toCity = to;
        m.depart = {date, {11, 5}};
        m.arrive = {date, {13, 20}};
        m.stops = Stops();
        m.durationMinutes = 495;
        m.cabin = Cabin::business;
        m.seats = 1 + number % 4;
        m.points = 60000 + 5000 * (number % 3);
        m.bookingURL = u"https://www.sas.no/book/flights/?search=OW_"_s + route;
        m.foundAt = app.clock.now() - Ticks(hoursAgo * 3600);
        if (change)
            change(m);
        app.database.offers().recordMatch(m);
    }
    void addGone(const QString& route, double hoursAgo) {
        const FareKey key{QDate(2027, 3, 1).addDays(++number), Route::fromText(route),
                          u"SK%1"_s.arg(900 + number)};
        app.database.offers().recordSoldOut(
            {0,
             1,
             key,
             {Cabin::business},
             u"%1 %2 · %3"_s.arg(route, DateFmt::iso(key.date), key.flights),
             app.clock.now() - Ticks(hoursAgo * 3600)});
    }
};

void returning(Match& m) {
    m.depart = {m.travelDate(), {17, 40}};
    m.arrive = {m.travelDate().addDays(1), {7, 15}};
    m.key.flights += u",SK1484"_s;
    m.stops = {1, {u"CPH"_s}};
}

World& filled(Shot& shot) {
    World& w = shot.make<World>();
    w.app.addWatcher(u"EWR"_s, [](Search& s) {
        s.name = u"New York i mars"_s;
        s.returnDateTo = QDate(2027, 4, 1);
    });
    w.app.addWatcher(u"NRT,BKK"_s);
    w.add(u"ARN-GOT"_s, u"Stockholm"_s, u"Göteborg"_s, 90);
    w.add(u"CPH-BKK"_s, u"København"_s, u"Bangkok"_s, 60, [](Match& m) { m.searchId = 2; });
    w.addGone(u"CPH-BKK"_s, 50);
    w.add(u"CPH-HND"_s, u"København"_s, u"Tokyo"_s, 40, [](Match& m) { m.searchId = 2; });
    w.add(u"NRT-CPH"_s, u"Tokyo"_s, u"København"_s, 30, [](Match& m) {
        m.searchId = 2;
        returning(m);
    });
    w.add(u"CPH-LAX"_s, u"København"_s, u"Los Angeles"_s, 20);
    w.addGone(u"OSL-EWR"_s, 5);
    w.add(u"OSL-EWR"_s, u"Oslo"_s, u"New York"_s, 2.8);
    w.add(u"JFK-OSL"_s, u"New York"_s, u"Oslo"_s, 7, [](Match& m) {
        returning(m);
        m.searchId = Match::communitySearchId;
    });
    w.add(u"EWR-OSL"_s, u"New York"_s, u"Oslo"_s, 0.8, returning);
    w.add(u"OSL-EWR"_s, u"Oslo"_s, u"New York"_s, 0.2);
    w.app.state.reload();
    return w;
}

void show(Shot& shot, World& world) {
    shot.show(u"Tindra.Hits"_s, u"HitsView"_s, {{u"page"_s, QVariant::fromValue(&world.page)}});
}

const Screen closed(u"hits"_s, [](Shot& shot) { show(shot, filled(shot)); });
const Screen open(u"hits-open"_s, [](Shot& shot) {
    World& world = filled(shot);
    world.page.toggle(u"New York|Oslo"_s);
    show(shot, world);
});
const Screen narrow(u"hits-narrow"_s, QSize(660, 600), [](Shot& shot) {
    World& world = filled(shot);
    world.page.toggle(u"New York|Oslo"_s);
    show(shot, world);
});
const Screen cheapest(u"hits-cheapest"_s, QSize(1120, 880), [](Shot& shot) {
    World& world = filled(shot);
    world.page.filter()->setSortOrder(2);
    world.page.toggle(u"Bangkok|København"_s);
    show(shot, world);
    for (const Qt::Key key : {Qt::Key_End, Qt::Key_Up})
        shot.page().key(key);
});
const Screen button(u"hits-keyboard"_s, QSize(1120, 880), [](Shot& shot) {
    World& world = filled(shot);
    world.page.toggle(u"New York|Oslo"_s);
    show(shot, world);
    shot.page().click(u"hideSoldOut"_s);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Down, Qt::Key_Return})
        shot.page().key(key);
});
const Screen empty(u"hits-empty"_s, [](Shot& shot) { show(shot, shot.make<World>()); });
const Screen hidden(u"hits-filtered"_s, QSize(1120, 880), [](Shot& shot) {
    World& world = filled(shot);
    world.app.addWatcher(u"LHR"_s, [](Search& s) { s.name = QString(5000, u'Å'); });
    world.page.filter()->setWatcherIndex(3);
    show(shot, world);
});
const Screen asked(u"hits-confirm"_s, QSize(880, 600), [](Shot& shot) {
    show(shot, filled(shot));
    shot.page().click(u"clear"_s);
});
const Screen cleared(u"hits-cleared"_s, QSize(880, 600), [](Shot& shot) {
    show(shot, filled(shot));
    shot.page().click(u"clear"_s);
    shot.page().click(u"Slett alle treff"_s);
});
const Screen saved(u"hits-saved"_s, QSize(880, 600), [](Shot& shot) {
    show(shot, filled(shot));
    shot.page().click(u"exportTable"_s);
});
const Screen strange(u"hits-strange"_s, [](Shot& shot) {
    World& world = shot.make<World>();
    world.add({}, {}, {}, 1, [](Match& m) {
        m = Match();
        m.foundAt = instantFromSeconds(0);
    });
    world.add(u"OSL-EWR-X"_s, QString(300, u'W'), u"ירושלים"_s, 1e9, [](Match& m) {
        m.points = 2147483647;
        m.seats = -1;
        m.depart = LocalTime::fromText(QString(90, u'd'), {});
        m.arrive = LocalTime::fromText(u"31.12.2027 kl. 10 om kvelden"_s, {});
        m.key.flights = QString(200, u'S');
        m.stops = Stops{1, {QString(200, u's')}};
        m.bookingURL = u"javascript:alert(1)"_s;
    });
    world.add(u"QQQ-ZZZ"_s, u"<b>Ingensteds</b>"_s, u"עיר"_s, -5, [](Match& m) {
        m.key.date = QDate();
        m.isCommunity = true;
    });
    world.app.addSoldOut(u"X"_s, [](SoldOut& record) { record.label = QString(200, u'R'); });
    world.app.state.reload();
    world.page.toggle(u"annet"_s);
    world.page.toggle(u"QQQ|ZZZ"_s);
    show(shot, world);
});

} // namespace hitsScreens
