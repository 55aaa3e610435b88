// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/support/RawSql.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/watchers/WatchersSection.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct World : AppWorld {
    WatchersSection section{state, worker, database.watchers(), clock};

    World(int watchers = 2) {
        for (int i = 0; i < watchers; ++i)
            addWatcher(i % 2 ? u"BKK"_s : u"EWR"_s, [i](Search& search) {
                search.name = u"Tur %1"_s.arg(i + 1);
                search.dateTo = QDate(2027, 3, 5);
            });
    }
    Search stored(int row) { return database.watchers().listSearches().value(row); }
};

struct Window : PageWindow {
    explicit Window(World& world, QSize size = {1120, 880})
        : PageWindow(
              u"Tindra.Watchers"_s, u"WatchersPage"_s,
              {{u"section"_s, QVariant::fromValue(&world.section)}, {u"offersSearch"_s, true}},
              size) {}
    /// What `name` stands for on the card of watcher `id`.
    const QQuickItem* onCard(int id, const QString& name) const {
        const QQuickItem* card = find(u"card%1"_s.arg(id));
        for (const QQuickItem* item : findAll(name)) {
            if (card && card->isAncestorOf(item))
                return item;
        }
        return nullptr;
    }
};

} // namespace

class TestWatchersWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void anEmptyPageSaysWhatToDo() {
        World world(0);
        Window page(world);
        QVERIFY(
            page.isShown(u"Ingen overvåkere ennå. Fyll inn reisedetaljer over og trykk Søk."_s));
        QVERIFY(page.isShown(u"0 aktive"_s));
        QSignalSpy asked(page.root(), SIGNAL(searchRequested()));
        page.click(u"Nytt søk"_s);
        QCOMPARE(asked.size(), 1);
    }

    void pausing() {
        World world;
        Window page(world);
        QCOMPARE(page.texts().mid(1, 2), QStringList({u"2 aktive"_s, u"Sjekk alle nå"_s}));
        page.click(page.onCard(2, u"Pause"_s));
        QVERIFY(!world.stored(1).enabled);
        QVERIFY(page.isShown(u"1 aktive"_s));
        QVERIFY(page.onCard(2, u"Pauset"_s));
        page.click(page.onCard(2, u"Start"_s));
        QVERIFY(world.stored(1).enabled);
        page.click(u"Overvåker Tur 1"_s); // the switch
        QVERIFY(!world.stored(0).enabled);
        page.key(Qt::Key_Space);
        QVERIFY(world.stored(0).enabled);
        // A file that refuses: what is shown is what it holds.
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE UPDATE ON searches BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        page.click(u"Overvåker Tur 1"_s);
        QVERIFY(page.find(u"Overvåker Tur 1"_s)->property("checked").toBool());
    }

    void renaming() {
        World world;
        Window page(world);
        page.click(page.onCard(1, u"Gi nytt navn…"_s));
        QVERIFY(page.isShown(u"Gi søket nytt navn"_s));
        QVERIFY(
            page.isShown(u"Navnet vises på overvåkeren og grupperer treffene på Treff-siden."_s));
        page.type(u"Høstferie"_s); // over the old one, which is selected
        page.key(Qt::Key_Escape);
        QCOMPARE(world.stored(0).name, u"Tur 1"_s);
        page.key(Qt::Key_F2); // the focus is back on the card
        page.type(u"Høstferie"_s);
        page.key(Qt::Key_Return);
        QCOMPARE(world.stored(0).name, u"Høstferie"_s);
        page.click(page.onCard(1, u"Gi nytt navn…"_s));
        page.key(Qt::Key_Backspace);
        page.click(u"Lagre"_s);
        QVERIFY(page.onCard(1, u"OSL → EWR"_s));
    }

    void deletingAndUndoing() {
        World world;
        world.addMatch();
        Window page(world);
        const auto remove = [&page] {
            page.click(page.onCard(1, u"Slett…"_s));
            QVERIFY(page.isShown(u"Slette overvåkeren «Tur 1»?"_s));
        };
        remove();
        page.key(Qt::Key_Return); // on "Avbryt", where the focus is
        QCOMPARE(world.database.watchers().listSearches().size(), 2);
        remove();
        page.click(u"Slett"_s);
        QVERIFY(!page.find(u"card1"_s));
        QCOMPARE(world.database.watchers().listSearches().size(), 1);
        QVERIFY(page.isShown(u"Overvåkeren «Tur 1» er slettet"_s));
        page.click(u"Angre"_s);
        QVERIFY(page.onCard(1, u"1 treff"_s));
        remove();
        page.click(u"Slett"_s);
        page.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(world.database.watchers().listSearches().size(), 2);
        QVERIFY(!page.find(u"undoBar"_s));
    }

    void theMenuStaysOpenThroughARound() {
        World world;
        world.airline.answer = [](const QString&, const QString&, const QString&) {
            return std::nullopt;
        };
        world.airline.heldLookup = 2;
        Window page(world);
        QTest::mouseClick(&page.window(), Qt::RightButton, {},
                          page.find(u"card2"_s)->mapToScene({200, 30}).toPoint());
        QVERIFY(page.isShown(u"Gi nytt navn…"_s));
        world.worker.pollOnce();
        settle();
        QVERIFY(page.isShown(u"2 av 5 oppslag"_s));
        world.airline.goOn.resolve(true);
        settle();
        QVERIFY(page.onCard(2, u"Sjekket akkurat nå"_s));
        QVERIFY(page.isShown(u"Gi nytt navn…"_s));
        page.key(Qt::Key_Down);
        page.key(Qt::Key_Down);
        page.key(Qt::Key_Return);
        QVERIFY(page.isShown(u"Gi søket nytt navn"_s));
        page.type(u"Vår"_s);
        page.key(Qt::Key_Return);
        QCOMPARE(world.stored(1).name, u"Vår"_s);

        // By keyboard, from a button of the card.
        page.click(page.onCard(1, u"Overvåker Tur 1"_s));
        page.key(Qt::Key_Menu);
        QVERIFY(page.isShown(u"Start"_s));
        page.key(Qt::Key_Escape);
        QVERIFY(!page.isShown(u"Start"_s));
        page.key(Qt::Key_F10, Qt::ShiftModifier);
        page.key(Qt::Key_Return);
        QVERIFY(world.stored(0).enabled);
    }

    void signedOutTheButtonSaysSo() {
        World world;
        world.airline.verified = world.airline.status = SASLoginStatus::loggedOut();
        Window page(world);
        page.click(page.onCard(2, u"Slett…"_s));
        page.click(u"Slett"_s);
        QVERIFY(page.isShown(u"Angre"_s));
        // The first press tries to revive the session, the second comes too soon after it.
        for (int press = 1; press <= 2; ++press) {
            page.click(u"Sjekk alle nå"_s);
            settle();
            QCOMPARE(world.airline.verifications, 1);
            QVERIFY(page.isShown(u"Ikke innlogget hos SAS — søkene får ingen data. Logg inn via "
                                 "Innstillinger."_s));
            QVERIFY(!page.isShown(u"Angre"_s));
            QMetaObject::invokeMethod(page.find(u"undoBar"_s), "dismiss");
        }
        page.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(world.database.watchers().listSearches().size(), 1);
        // A round that had to be broken off tells by itself.
        world.airline.status = {};
        world.airline.answer = [&world](const QString&, const QString&, const QString&) {
            world.airline.status = SASLoginStatus::loggedOut();
            return std::nullopt;
        };
        page.click(u"Sjekk alle nå"_s);
        settle();
        QVERIFY(!page.find(u"undoBar"_s));
        QVERIFY(page.isShown(u"⚠ søk 1: Ikke innlogget hos SAS — søkene får ingen data. Logg inn "
                             "via Innstillinger."_s));
    }

    void aRoundIsFollowed() {
        World world(12);
        world.airline.answer = [&world](const QString&, const QString&, const QString&) {
            world.clock.advance(30s);
            return std::nullopt;
        };
        world.airline.heldLookup = 9;
        Window page(world, {880, 600});
        page.click(u"Sjekk alle nå"_s);
        settle();
        for (const QString& text : {u"Sjekker Tur 2 — CPH→BKK"_s, u"4 av 5 oppslag"_s,
                                    u"Overvåker 2 av 12 · ca. 26 min igjen"_s})
            QVERIFY2(page.isShown(text), qPrintable(page.texts().join(u'|')));

        // Somebody who reads further down is not moved when the strip goes.
        QTest::keyClick(&page.window(), Qt::Key_End);
        const auto place = [&page] { return page.find(u"card11"_s)->mapToScene({0, 0}); };
        const QPointF before = place();
        world.airline.goOn.resolve(true);
        for (int i = 0; i < 20 && world.worker.isRunning(); ++i)
            settle();
        page.grab();
        QVERIFY(!page.isShown(u"Sjekker…"_s));
        QVERIFY(page.isShown(u"reiser gjennomgått"_s));
        QVERIFY(page.isShown(u"⚠ søk 12: SAS ga ingen data — sjekk EuroBonus-innloggingen "
                             "(Innstillinger)."_s));
        QCOMPARE(place(), before);
    }

    void editing() {
        World world;
        Window page(world);
        page.click(page.onCard(1, u"Rediger søket…"_s));
        QVERIFY(page.isShown(u"Rediger «Tur 1»"_s));
        QVERIFY(page.isShown(u"AVREISE-VINDU"_s));
        QVERIFY(!page.isShown(u"HJEMREISE-VINDU"_s));
        page.key(Qt::Key_A, Qt::ControlModifier);
        page.type(u"Vår"_s);
        page.click(u"Tur/retur"_s);
        QVERIFY(page.isShown(u"HJEMREISE-VINDU"_s));
        page.click(page.findAll(u"Business"_s).last()); // the chip, not a card
        page.click(u"First"_s);
        page.click(u"Inkluder partnere (SkyTeam)"_s);
        page.click(page.findAll(u"Flere"_s).value(0));
        QVERIFY(page.isShown(u"Min. seter: 2"_s));
        page.click(page.findAll(u"Færre"_s).value(1));
        QVERIFY(page.isShown(u"Maks stopp: 1"_s));
        page.click(u"destinationField"_s);
        page.key(Qt::Key_A, Qt::ControlModifier);
        page.key(Qt::Key_Backspace);
        QVERIFY(!page.find(u"Lagre"_s)->isEnabled());
        page.key(Qt::Key_Return);
        QVERIFY(page.isShown(u"Rediger «Tur 1»"_s));
        page.type(u"tokyo n"_s);
        page.key(Qt::Key_Return); // takes the suggestion
        QVERIFY(page.isShown(u"Rediger «Tur 1»"_s));
        page.key(Qt::Key_Return); // saves
        QVERIFY(!page.isShown(u"Rediger «Tur 1»"_s));
        const Search stored = world.stored(0);
        QCOMPARE(stored.name, u"Vår"_s);
        QCOMPARE(stored.destination, u"NRT"_s);
        QCOMPARE(stored.cabins, CabinSet{Cabin::first});
        QCOMPARE(stored.minSeats, 2);
        QCOMPARE(stored.maxStops, 1);
        QVERIFY(stored.includePartners && stored.isRoundTrip());
        QVERIFY(page.onCard(1, u"OSL ⇄ NRT"_s));

        page.click(page.onCard(1, u"Rediger søket…"_s));
        page.type(u"!"_s);
        page.key(Qt::Key_Escape);
        QCOMPARE(world.stored(0), stored);
        QVERIFY(!world.section.sheet());
    }

    void pastDatesAreOfferedNewOnes() {
        World world;
        world.addWatcher(u"NRT"_s, [](Search& search) {
            search.dateFrom = QDate(2026, 12, 1);
            search.dateTo = QDate(2026, 12, 11);
        });
        Window page(world);
        QVERIFY(page.onCard(3, u"Alle datoene er passert."_s));
        QVERIFY(!page.onCard(1, u"Alle datoene er passert."_s));
        const Search before = world.stored(2);
        page.click(u"Flytt datoene…"_s);
        QVERIFY(page.isShown(u"15. jan. – 25. jan. 2027"_s));
        QCOMPARE(world.stored(2), before);
        page.click(u"Lagre"_s);
        QCOMPARE(world.stored(2).dateFrom, QDate(2027, 1, 15));
        QVERIFY(!page.isShown(u"Flytt datoene…"_s));
    }

    void badInputIsDrawn() {
        World world(0);
        QString codes;
        for (int i = 0; i < 500; ++i)
            codes += u"X%1,"_s.arg(i);
        world.addWatcher(codes, [&codes](Search& search) {
            search.name = QString(5000, u'N');
            search.origin = codes;
            search.cabins = {};
        });
        world.addWatcher(u"???"_s, [](Search& search) { search.name = u"טיסות <b>x</b>\n2"_s; });
        Window page(world, {880, 600});
        const QQuickItem* card = page.find(u"card1"_s);
        QVERIFY(card->height() < 200);
        QVERIFY(page.isShown(u"טיסות <b>x</b> 2"_s));
        for (const auto* action : {"Slett…", "Rediger søket…"}) {
            page.click(page.onCard(1, QString::fromUtf8(action)));
            const QQuickItem* cancel = page.find(u"Avbryt"_s);
            QVERIFY(QRectF(0, 0, 880, 600)
                        .contains(cancel->mapRectToScene(
                            QRectF(0, 0, cancel->width(), cancel->height()))));
            page.click(cancel);
        }
    }
};

TINDRA_UI_TEST(TestWatchersWindow)
#include "test_watchers_window.moc"
