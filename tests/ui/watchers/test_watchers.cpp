// SPDX-License-Identifier: MIT
#include "core/DateFmt.h"
#include "tests/support/AppWorld.h"
#include "tests/support/RawSql.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/watchers/WatchersSection.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Page : AppWorld {
    WatchersSection section{state, worker, database.watchers(), clock};

    QVariant shown(int row, WatcherCards::Role role) {
        return section.cards()->data(section.cards()->index(row), role);
    }
};

const QString nbsp(QChar::Nbsp);

QString datesOf(const Search& search) {
    QStringList texts;
    for (const QDate date :
         {search.dateFrom, search.dateTo, search.returnDateFrom, search.returnDateTo})
        texts.append(DateFmt::iso(date));
    return texts.join(u'|');
}

Search addWatcher(AppWorld& world, const QString& dates) {
    return world.addWatcher(u"EWR"_s, [parts = dates.split(u'|')](Search& search) {
        search.dateFrom = DateFmt::dateFromIso(parts[0]);
        search.dateTo = DateFmt::dateFromIso(parts[1]);
        search.returnDateFrom = DateFmt::dateFromIso(parts[2]);
        search.returnDateTo = DateFmt::dateFromIso(parts[3]);
    });
}

} // namespace

class TestWatchers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cardTexts() {
        Search search;
        const auto texts = [&search] {
            const auto card = WatcherCard::of(search, 1284, ManualClock());
            return QStringList({card.title(), card.source(), card.route(), card.outbound(),
                                card.homebound(), card.cabinsLabel(), card.status})
                .join(u'|');
        };
        search.origin = u"OSL,BGO"_s;
        search.destination = u"JFK,,EWR"_s;
        search.cabins = {Cabin::premeco, Cabin::first};
        search.dateFrom = QDate(2027, 2, 28);
        search.dateTo = QDate(2027, 3, 31);
        QCOMPARE(texts(), u"OSL,BGO → JFK,,EWR|SAS|OSL, BGO → JFK, EWR|Ut 28.02.27 – 31.03.27||"
                          "First · Premium|Ikke sjekket enda"_s);
        search.name = u"USA  i\nbusiness"_s;
        search.includePartners = true;
        search.returnDateFrom = QDate(2027, 12, 20);
        search.returnDateTo = QDate(2028, 1, 10);
        search.cabins = {Cabin::economy, Cabin::business};
        search.lastChecked = ManualClock().now() - 9min;
        QCOMPARE(texts(), u"USA  i business|SAS + PARTNERE|OSL, BGO ⇄ JFK, EWR|"
                          "Ut 28.02.27 – 31.03.27|Hjem 20.12.27 – 10.01.28|Business · Økonomi|"
                          "Sjekket 9 min siden"_s);
        search = Search();
        search.name = u"x"_s;
        search.enabled = false;
        QCOMPARE(texts(), u"x|SAS| → |||Business|Pauset"_s);
        search.dateFrom = QDate(2027, 2, 28);
        QVERIFY(texts().contains(u"|Ut 28.02.27 – ||"_s));

        search.name = u"Lang tur\n"_s + QString(5000, u'x');
        const WatcherCard card{search, 1284, {}};
        QCOMPARE(card.hitsText(), u"1"_s + nbsp + u"284 treff"_s);
        QCOMPARE(card.quotedTitle(), u"Lang tur "_s + QString(70, u'x') + u'…');
    }

    void cardsFollowWithoutBeingMadeAnew() {
        Page page;
        QAbstractItemModelTester tester(page.section.cards(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(page.section.isEmpty());
        for (const QString& destination : {u"EWR"_s, u"BKK"_s, u"NRT"_s})
            page.addWatcher(destination);
        QPersistentModelIndex last = page.section.cards()->index(2);
        QSignalSpy changes(page.section.cards(), &QAbstractItemModel::dataChanged);
        QSignalSpy resets(page.section.cards(), &QAbstractItemModel::modelReset);

        page.addMatch([](Match& match) { match.searchId = 2; });
        QCOMPARE(page.shown(1, WatcherCards::HitsTextRole), u"1 treff"_s);
        QVERIFY(page.shown(1, WatcherCards::HasHitsRole).toBool());
        QVERIFY(!page.shown(0, WatcherCards::HasHitsRole).toBool());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex().row(), 1);

        page.database.watchers().deleteSearch(1);
        page.addWatcher(u"SIN"_s);
        QCOMPARE(last.row(), 1);
        QCOMPARE(page.shown(2, WatcherCards::RouteRole), u"OSL → SIN"_s);
        page.database.watchers().deleteSearch(3);
        page.database.watchers().deleteSearch(4);
        page.state.reload();
        QVERIFY(!last.isValid());
        QCOMPARE(page.section.cards()->rowCount(), 1);
        QCOMPARE(resets.size(), 0);
    }

    void actionsGoThroughTheDatabase() {
        Page page;
        page.addWatcher();
        page.addWatcher(u"BKK"_s);
        QCOMPARE(page.section.activeText(), u"2 aktive"_s);
        page.section.toggle(1);
        page.section.setWatching(1, false); // is off already
        settle();
        QVERIFY(!page.database.watchers().listSearches()[0].enabled);
        QCOMPARE(page.section.activeText(), u"1 aktive"_s);
        QCOMPARE(page.shown(0, WatcherCards::StatusRole), u"Pauset"_s);
        page.section.setWatching(1, true);
        QVERIFY(page.database.watchers().listSearches()[0].enabled);

        page.section.rename(1, u"Høst"_s);
        settle();
        QCOMPARE(page.shown(0, WatcherCards::TitleRole), u"Høst"_s);
        page.section.rename(1, u""_s);
        settle();
        QCOMPARE(page.shown(0, WatcherCards::TitleRole), u"OSL → EWR"_s);

        page.addMatch();
        QSignalSpy removed(&page.section, &WatchersSection::removed);
        page.section.remove(1);
        settle();
        QCOMPARE(removed.size(), 1);
        QCOMPARE(removed[0][0], u"Overvåkeren «OSL → EWR» er slettet"_s);
        QCOMPARE(page.database.watchers().listSearches().size(), 1);
        QVERIFY(page.state.matches().isEmpty());
        page.section.undoRemove();
        settle();
        QCOMPARE(page.shown(0, WatcherCards::TitleRole), u"OSL → EWR"_s);
        QCOMPARE(page.shown(0, WatcherCards::HitsTextRole), u"1 treff"_s);
        page.section.remove(9);
        page.section.undoRemove(); // is back already
        QCOMPARE(removed.size(), 1);

        page.section.remove(1);
        runOn(page.dir.path(), "CREATE TRIGGER full BEFORE INSERT ON searches BEGIN "
                               "SELECT RAISE(ABORT, 'no room'); END;");
        page.section.undoRemove();
        QCOMPARE(removed.size(), 3);
        QCOMPARE(removed[2][0], u"Overvåkeren kunne ikke legges tilbake. Prøv igjen."_s);
        runOn(page.dir.path(), "DROP TRIGGER full;");
        page.section.undoRemove();
        settle();
        QCOMPARE(page.database.watchers().listSearches().size(), 2);
        QCOMPARE(removed.size(), 3);
    }

    void timesGoOnWhileTheyAreSeen() {
        Page page;
        page.addWatcher();
        page.database.watchers().markChecked(1, 0);
        page.state.reload();
        const qsizetype others = page.clock.waiting();
        page.section.setShown(true);
        QCOMPARE(page.shown(0, WatcherCards::StatusRole), u"Sjekket akkurat nå"_s);
        page.clock.advance(2min);
        QCOMPARE(page.shown(0, WatcherCards::StatusRole), u"Sjekket 2 min siden"_s);
        page.section.setShown(false);
        QCOMPARE(page.clock.waiting(), others);
        page.clock.advance(2min);
        page.section.setShown(true);
        QCOMPARE(page.shown(0, WatcherCards::StatusRole), u"Sjekket 4 min siden"_s);
        QVERIFY(!page.shown(0, WatcherCards::PastRole).toBool());
        page.clock.advance(24h * 80);
        QVERIFY(page.shown(0, WatcherCards::PastRole).toBool());
    }

    void aRoundFromTheButton() {
        Page page;
        QVERIFY(!page.section.canCheck()); // nobody to check
        for (const QString& destination : {u"EWR"_s, u"BKK"_s})
            page.addWatcher(destination, [](Search& search) { search.dateTo = QDate(2027, 3, 5); });
        QStringList lookups;
        QStringList rounds;
        double furthest = 0;
        page.airline.answer = [&](const QString&, const QString&, const QString&) {
            page.clock.advance(30s);
            return std::nullopt;
        };
        connect(page.section.activity(), &ActivityStrip::changed, &page.section, [&] {
            const ActivityStrip& strip = *page.section.activity();
            if (!strip.running())
                return;
            lookups.append(strip.lookupsText());
            rounds.append(strip.roundText());
            QCOMPARE_GE(strip.fraction(), furthest > 0 ? furthest : -1);
            furthest = strip.fraction();
        });
        page.section.checkAll();
        QVERIFY(!page.section.canCheck());
        page.section.checkAll(); // while one runs: nothing
        settle();
        QVERIFY(page.section.canCheck());
        QVERIFY(!page.section.activity()->running());
        QCOMPARE(page.section.activity()->roundText(), u""_s);
        QCOMPARE(furthest, 1);
        QVERIFY(lookups.contains(u"3 av 5 oppslag"_s));
        rounds.removeDuplicates();
        // Ten lookups of half a minute; after the third, seven are left.
        QCOMPARE(rounds,
                 QStringList({u"Overvåker 1 av 2"_s, u"Overvåker 1 av 2 · ca. 4 min igjen"_s,
                              u"Overvåker 1 av 2 · ca. 3 min igjen"_s,
                              u"Overvåker 2 av 2 · ca. 3 min igjen"_s,
                              u"Overvåker 2 av 2 · ca. 2 min igjen"_s,
                              u"Overvåker 2 av 2 · ca. 1 min igjen"_s}));
        QCOMPARE(ActivityStrip::lookupsText(3, 12, 40), u"3 av 12 oppslag · roterer over 40"_s);
        QCOMPARE(ActivityStrip::lookupsText(0, 0, 40), u""_s);
    }

    void standstillDoesNotCount() {
        RoundPace pace;
        const auto note = [&pace](int planned, int lookup, double at) {
            pace.note({planned}, 0, lookup, Ticks(at));
        };
        note(10, 0, 0);
        QCOMPARE(pace.fraction(), 0);
        double at = 0;
        for (int lookup = 1; lookup <= 4; ++lookup) {
            QVERIFY(!pace.left());
            note(10, lookup, at += 2);
        }
        QCOMPARE(pace.left()->count(), 2.0 * 7);
        note(10, 4, at); // waits for a sign-in
        note(10, 5, at += 600);
        note(8, 6, at += 2); // and the watcher turned out shorter
        QCOMPARE(pace.left()->count(), 2.0 * 3);
        QCOMPARE(pace.fraction(), 6.0 / 8);
        pace.note({10}, 5, 1, Ticks(at)); // of a round it does not know
        QCOMPARE(pace.fraction(), 6.0 / 8);
    }

    void timeLeftIsSteady() {
        struct {
            std::optional<int> shown;
            int seconds;
            int minutes;
        } const cases[] = {{{}, 89, 1}, {{}, 91, 2},    {2, 76, 2},     {2, 70, 1}, {2, 164, 2},
                           {2, 166, 3}, {60, 3300, 60}, {60, 3200, 53}, {1, 20, 1}, {1, 14, 0}};
        for (const auto& [shown, seconds, minutes] : cases)
            QCOMPARE(steadyMinutes(shown, Ticks(seconds)), minutes);
        QCOMPARE(timeLeftText(0), u"under 1 min igjen"_s);
        QCOMPARE(timeLeftText(89), u"ca. 89 min igjen"_s);
        QCOMPARE(timeLeftText(100), u"ca. 2 t igjen"_s);
    }

    void lastCheck() {
        Page page;
        const LastCheckStrip& strip = *page.section.lastCheck();
        QVERIFY(!strip.present());
        const auto store = [&page](const char* summary) {
            page.database.safekeeping().set(Kept::lastPoll, QString::fromUtf8(summary));
            page.state.reload();
        };
        const QDateTime at(QDate(2027, 1, 15), QTime(14, 5));
        store(qPrintable(
            u"{\"at\":%1.5,\"searches\":3,\"fetched\":1284,\"matches\":41,\"new\":4,"
            "\"soldout\":1,\"errors\":[\"søk 3: a\",\"<b>b</b>\"]}"_s.arg(at.toSecsSinceEpoch())));
        QVERIFY(strip.present());
        QCOMPARE(strip.heading(), u"SISTE SJEKK · 14:05"_s);
        QCOMPARE(strip.figures(), QStringList({u"3"_s, u"1"_s + nbsp + u"284"_s, u"41"_s}));
        QCOMPARE(strip.alertsText(), u"4 nye varsler"_s);
        QCOMPARE(strip.soldOutText(), u"1 utsolgt"_s);
        QCOMPARE(strip.errorLines(), QStringList({u"⚠ søk 3: a"_s, u"⚠ <b>b</b>"_s}));
        store("{\"at\":1e300,\"searches\":1}");
        QCOMPARE(strip.heading(), u"SISTE SJEKK"_s);
        QCOMPARE(strip.alertsText() + strip.soldOutText(), u""_s);
    }

    void editedWindows() {
        Page page;
        const auto edited = [&page](const QString& stored) {
            page.section.edit(addWatcher(page, stored).id);
            const QString shown = datesOf(page.section.sheet()->edited());
            page.section.closeSheet();
            return shown;
        };
        for (const QString& stored : {u"2027-12-20|2028-01-10|2028-02-28|2028-02-29"_s,
                                      u"2027-03-01|2027-03-31||"_s, u"2026-03-05|2026-03-06||"_s})
            QCOMPARE(edited(stored), stored);
        // Damaged, and one that ends before it starts.
        QCOMPARE(edited(u"2027-02-29|x||2027-02-30"_s), u"2027-01-15|2027-03-16||"_s);
        QCOMPARE(edited(u"2027-03-05|2027-03-01||"_s), u"2027-03-05|2027-03-05||"_s);
    }

    void pastDatesAreMovedOn() {
        for (const auto& [stored, shown] :
             {std::pair(u"2026-12-01|2026-12-11|2026-12-21|2027-01-04"_s,
                        u"2027-01-15|2027-01-25|2027-02-04|2027-02-18"_s),
              {u"2026-12-30|2027-01-14||"_s, u"2027-01-15|2027-01-30||"_s},
              {u"2027-01-01||2027-01-08|"_s, u"2027-01-15|2027-01-15|2027-01-22|2027-01-22"_s}}) {
            Page page;
            const Search original = addWatcher(page, stored);
            QVERIFY(page.shown(0, WatcherCards::PastRole).toBool());
            page.section.editMoved(original.id);
            QCOMPARE(datesOf(page.section.sheet()->edited()), shown);
            QCOMPARE(page.database.watchers().listSearches(), QList{original});
            page.section.sheet()->save();
            settle();
            QVERIFY(!page.shown(0, WatcherCards::PastRole).toBool());
        }
    }

    void editing() {
        Page page;
        Search original = page.addWatcher(u"EWR"_s, [](Search& search) {
            search.name = u"Høst"_s;
            search.minSeats = -3;
            search.maxStops = 2;
        });
        page.addMatch();
        page.database.seen().upsertSeen(1, {}, {{Cabin::business}, {}});
        page.database.watchers().toggleSearch(1);
        page.database.watchers().markChecked(1, 4);
        page.state.reload();
        page.section.edit(7);
        QVERIFY(!page.section.sheet());
        page.section.edit(1);
        EditWatcherSheet& sheet = *page.section.sheet();
        QSignalSpy finished(&sheet, &EditWatcherSheet::finished);
        QCOMPARE(sheet.title(), u"Rediger «Høst»"_s);
        QVERIFY(!sheet.property("roundTrip").toBool());

        sheet.origin()->setCode(u" \t"_s);
        QVERIFY(!sheet.canSave());
        sheet.save();
        QCOMPARE(finished.size(), 0);
        sheet.origin()->setCode(u"osl, bgo"_s);
        sheet.destination()->setCode(u"jfk"_s);
        sheet.cabins()->setCabins({});
        sheet.setMaxStops(7);
        sheet.setProperty("roundTrip", true);
        sheet.setProperty("name", u""_s);
        sheet.setProperty("includePartners", true);
        runOn(page.dir.path(), "CREATE TRIGGER full BEFORE UPDATE ON searches BEGIN "
                               "SELECT RAISE(ABORT, 'no room'); END;");
        sheet.save();
        QVERIFY(finished.isEmpty());
        QVERIFY(sheet.property("problem").toString().contains(u"kunne ikke lagres"_s));
        runOn(page.dir.path(), "DROP TRIGGER full;");
        sheet.save();
        QCOMPARE(finished.size(), 1);
        page.section.closeSheet();
        QVERIFY(!page.section.sheet());

        original.name.clear();
        original.origin = u"OSL,BGO"_s;
        original.destination = u"JFK"_s;
        original.minSeats = 1;
        original.maxStops = 3;
        original.returnDateFrom = QDate(2027, 3, 1);
        original.returnDateTo = QDate(2027, 4, 30);
        original.includePartners = true;
        original.enabled = false;
        original.lastChecked = page.clock.now();
        original.lastFound = 4;
        QCOMPARE(page.database.watchers().listSearches(), QList{original});
        QCOMPARE(page.state.matches().size(), 1);
        QCOMPARE(page.database.seen().seenCabins(1).size(), 1);
    }
};

TINDRA_UI_TEST(TestWatchers)
#include "test_watchers.moc"
