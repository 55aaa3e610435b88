// SPDX-License-Identifier: MIT
#include "screens/Screen.h"
#include "tests/support/AppWorld.h"
#include "ui/watchers/WatchersSection.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace watchersScreens {

struct World : AppWorld {
    WatchersSection section{state, worker, database.watchers(), clock};

    void add(const QString& name, const QString& origin, const QString& destination,
             const std::function<void(Search&)>& change = {}) {
        const Search stored = addWatcher(destination, [&](Search& search) {
            search.name = name;
            search.origin = origin;
            search.returnDateFrom = QDate(2027, 3, 8);
            search.returnDateTo = QDate(2027, 4, 7);
            if (change)
                change(search);
        });
        database.watchers().markChecked(stored.id, 1);
    }
    void addPast() {
        add(u"Jul i Bangkok"_s, u"OSL"_s, u"BKK"_s, [](Search& search) {
            search.dateFrom = QDate(2026, 12, 18);
            search.dateTo = QDate(2026, 12, 23);
            search.returnDateFrom = QDate(2027, 1, 2);
            search.returnDateTo = QDate(2027, 1, 5);
        });
    }
    void addHits(qint64 id, int count) {
        for (int i = 0; i < count; ++i)
            addMatch([id](Match& match) { match.searchId = id; });
    }
    void fill() {
        add(u"USA i business"_s, u"OSL,CPH,AMS,CDG"_s, u"ATL,BOS,ORD,DTW,LAX,JFK,EWR"_s,
            [](Search& search) { search.includePartners = true; });
        add(u"Asia i business"_s, u"CPH"_s, u"BKK,HND,NRT,SIN,PVG"_s,
            [](Search& search) { search.cabins = {Cabin::business, Cabin::premeco}; });
        add({}, u"OSL,BGO"_s, u"SXM"_s, [](Search& search) {
            search.returnDateFrom = QDate();
            search.returnDateTo = QDate();
            search.cabins = {Cabin::business, Cabin::economy};
            search.includePartners = true;
        });
        addHits(1, 7);
        addHits(2, 11);
        database.watchers().toggleSearch(3);
        state.reload();
        clock.advance(9min);
    }
    void setLastRound(const QStringList& errors, int alerts = 4, int soldOut = 1) {
        PollSummary summary;
        summary.at = clock.now();
        summary.searches = 3;
        summary.fetched = 1284;
        summary.matches = 41;
        summary.newAlerts = alerts;
        summary.soldOut = soldOut;
        summary.errors = errors;
        database.safekeeping().set(Kept::lastPoll,
                                   QString::fromUtf8(QJsonDocument(summary.toJson()).toJson()));
        state.reload();
    }
    /// A round that stands at `lookup`.
    void runTo(int lookup) {
        airline.heldLookup = lookup;
        airline.answer = [this](const QString&, const QString&, const QString&) {
            clock.advance(6s);
            return std::nullopt;
        };
        section.checkAll();
        settle();
    }
};

void open(Shot& shot, const std::function<void(World&)>& build) {
    auto& world = shot.make<World>();
    build(world);
    shot.show(u"Tindra.Watchers"_s, u"WatchersPage"_s,
              {{u"section"_s, QVariant::fromValue(&world.section)}, {u"offersSearch"_s, true}});
}

void openFilled(Shot& shot) {
    open(shot, [](World& world) {
        world.fill();
        world.setLastRound({});
    });
}

const Screen filled(u"watchers-filled"_s, openFilled);
const Screen empty(u"watchers-empty"_s, [](Shot& shot) { open(shot, [](World&) {}); });
const Screen running(u"watchers-running"_s, [](Shot& shot) {
    open(shot, [](World& world) {
        world.fill();
        world.setLastRound({u"søk 3: SAS-søk krever avreisedato."_s});
        world.runTo(23);
    });
});
const Screen beginning(u"watchers-beginning"_s, {880, 600}, [](Shot& shot) {
    open(shot, [](World& world) {
        world.fill();
        world.runTo(1);
    });
});
const Screen errors(u"watchers-errors"_s, {880, 600}, [](Shot& shot) {
    open(shot, [](World& world) {
        world.fill();
        world.setLastRound(
            {u"søk 1: SAS ga ingen data — sjekk EuroBonus-innloggingen (Innstillinger)."_s,
             u"søk 2: Ikke innlogget hos SAS — søkene får ingen data. Logg inn via Innstillinger. "
             "Denne linjen er så lang at den må brytes for å få plass på en smal skjerm."_s},
            0, 0);
    });
});
const Screen signedOut(u"watchers-signed-out"_s, {880, 600}, [](Shot& shot) {
    open(shot, [](World& world) {
        world.fill();
        world.setLastRound({});
        world.airline.verified = world.airline.status = SASLoginStatus::loggedOut();
    });
    shot.page().click(u"Sjekk alle nå"_s);
    settle();
});
const Screen badInput(u"watchers-bad-input"_s, [](Shot& shot) {
    open(shot, [](World& world) {
        QString codes;
        for (int i = 0; i < 500; ++i)
            codes += u"X%1,"_s.arg(i, 2, 36, QChar(u'0')).toUpper();
        world.add(QString(5000, u'N'), codes, codes);
        world.add(u"טיסות לטוקיו <b>i vår</b>"_s, u"zzz"_s, u"???"_s, [](Search& search) {
            search.dateTo = QDate();
            search.returnDateFrom = QDate();
            search.cabins = {};
        });
        world.add(u"To\nlinjer"_s, u""_s, u""_s, [](Search& search) {
            search.dateFrom = QDate();
            search.dateTo = QDate();
        });
        world.setLastRound({u"<img src=x> & \u202e snudd"_s}, -5, 0);
    });
});
const Screen past(u"watchers-past"_s, {880, 600}, [](Shot& shot) {
    open(shot, [](World& world) {
        world.addPast();
        world.add(u"Asia i business"_s, u"CPH"_s, u"BKK,HND,NRT,SIN,PVG"_s);
        world.addPast();
        world.database.watchers().toggleSearch(3);
        world.state.reload();
    });
});
const Screen moving(u"watchers-move"_s, {1120, 880}, [](Shot& shot) {
    open(shot, [](World& world) { world.addPast(); });
    shot.page().click(u"Flytt datoene…"_s);
});
const Screen menu(u"watchers-menu"_s, {880, 600}, [](Shot& shot) {
    openFilled(shot);
    QQuickItem* card = shot.page().find(u"card1"_s);
    QTest::mouseClick(&shot.page().window(), Qt::RightButton, {},
                      card->mapToScene({300, 40}).toPoint());
});
const Screen focus(u"watchers-focus"_s, {880, 600}, [](Shot& shot) {
    openFilled(shot);
    for (int i = 0; i < 4; ++i)
        shot.page().key(Qt::Key_Tab);
});
const Screen renaming(u"watchers-rename"_s, {880, 600}, [](Shot& shot) {
    openFilled(shot);
    shot.page().click(u"Gi nytt navn…"_s);
});
const Screen deletion(u"watchers-delete"_s, {880, 600}, [](Shot& shot) {
    openFilled(shot);
    shot.page().click(u"Slett…"_s);
});
const Screen longDeletion(u"watchers-delete-long"_s, {880, 600}, [](Shot& shot) {
    open(shot, [](World& world) { world.add(QString(5000, u'N'), u"OSL"_s, u"EWR"_s); });
    shot.page().click(u"Slett…"_s);
});
const Screen undo(u"watchers-undo"_s, {880, 600}, [](Shot& shot) {
    openFilled(shot);
    shot.page().click(u"Slett…"_s);
    shot.page().click(u"Slett"_s);
});
const Screen editing(u"watchers-edit"_s, [](Shot& shot) {
    openFilled(shot);
    shot.page().click(u"Rediger søket…"_s);
});
const Screen editingOneWay(u"watchers-edit-one-way"_s, {1120, 880}, [](Shot& shot) {
    openFilled(shot);
    shot.page().click(u"Rediger søket…"_s);
    shot.page().click(u"Tur/retur"_s);
    shot.page().click(shot.page().find(u"destinationField"_s));
    shot.page().key(Qt::Key_End);
    shot.page().type(u", to"_s);
});

} // namespace watchersScreens
