// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/TestProgram.h"
#include "ui/hits/Export.h"
#include "ui/hits/HitsPage.h"
#include "ui/hits/TripCard.h"

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct PageWorld : AppWorld {
    FakeDesktop desktop;
    HitsPage page{state, database.offers(), desktop, clock, Site{}};
    QAbstractItemModelTester tester{page.rows(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest};

    PageWorld() {
        // Nobody else has found anything.
        http.answer = [](const HttpRequest&) { return std::nullopt; };
    }
    void add(const QString& route, const std::function<void(Match&)>& change = {}) {
        addMatch([&](Match& m) {
            m.key.route = Route::fromText(route);
            m.key.flights = u"SK%1"_s.arg(++m_number);
            m.fromCity = route.left(3);
            m.toCity = route.right(3);
            if (change)
                change(m);
        });
        settle();
    }
    /// What each row says: a title, or the flights of its cards.
    QStringList rows() {
        QStringList lines;
        for (const HitsRow& row : page.rows()->rows()) {
            QString line = row.title;
            for (const Card& card : row.cards)
                line += Hits::key(card.hit).flights + u' ';
            lines.append(line.trimmed());
        }
        return lines;
    }
    QVariant shown(int row, int role) { return page.rows()->data(page.rows()->index(row), role); }

private:
    int m_number = 0;
};

std::function<void(Match&)> flight(const QString& name) {
    return [name](Match& m) { m.key.flights = name; };
}

} // namespace

class TestHitsPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsFollowChoices() {
        PageWorld w;
        w.addWatcher(u"EWR"_s, [](Search& s) { s.returnDateTo = QDate(2027, 4, 1); });
        w.page.setShown(true);
        QCOMPARE(w.page.emptyText().left(17), u"Ingen treff ennå."_s);
        w.add(u"OSL-EWR"_s, flight(u"a"_s));
        w.add(u"EWR-OSL"_s, flight(u"b"_s));
        w.addSoldOut(u"2027-03-05-OSL-BKK-c"_s);
        settle();
        QCOMPARE(w.rows(),
                 QStringList({u"🇺🇸 USA & Canada"_s, u"OSL ⇄ EWR"_s, u"🌏 Asia"_s, u"OSL → BKK"_s}));
        QCOMPARE(w.page.countText(), u"3 treff"_s);
        w.page.toggle(u"New York|Oslo"_s);
        QCOMPARE(w.rows().mid(1, 5),
                 QStringList({u"OSL ⇄ EWR"_s, u"UTREISE"_s, u"a"_s, u"HJEMREISE"_s, u"b"_s}));
        QVERIFY(w.page.rows()->rows()[5].cards[0].direction == Direction::home);
        QCOMPARE(w.shown(1, HitsModel::CheapestRole), u"fra 60\u00a0000 poeng"_s);
        QCOMPARE(w.shown(7, HitsModel::SoldOutRole), u"1 utsolgt"_s);
        QCOMPARE(w.page.nextStop(0, 1), 1);
        QCOMPARE(w.page.nextStop(3, 1), 5);
        QCOMPARE(w.page.nextStop(3, -1), 1);
        QCOMPARE(w.page.nextStop(7, 1), 7);

        w.page.filter()->setHideSoldOut(true);
        w.page.filter()->setSortOrder(1);
        QCOMPARE(w.rows().size(), 5);
        w.addWatcher(u"LHR"_s, [](Search& s) { s.name = u"London"_s; });
        QCOMPARE(w.page.filter()->watcherNames(),
                 QStringList({u"Alle overvåkere"_s, u"OSL → EWR"_s, u"London"_s}));
        w.page.filter()->setWatcherIndex(2);
        QCOMPARE(w.page.emptyText(), u"Ingen treff matcher filtrene."_s);
        // A deleted watcher filters nothing.
        w.database.watchers().deleteSearch(2);
        w.state.reload();
        settle();
        QCOMPARE(w.page.filter()->watcherIndex(), 0);
        QCOMPARE(w.rows().size(), 5);
    }

    void newsChangesNoMoreThanItMust() {
        PageWorld w;
        w.page.setShown(true);
        w.page.filter()->setSortOrder(1);
        for (const QString& to : {u"BKK"_s, u"NRT"_s, u"LHR"_s, u"MIA"_s, u"EWR"_s}) {
            w.add(u"OSL-"_s + to, flight(to));
            w.clock.advance(1s);
        }
        for (const JourneyGroup& journey : QList(w.page.journeys()))
            w.page.toggle(journey.id);
        QCOMPARE(w.rows().size(), 15);
        QCOMPARE(w.rows().first(), u"OSL → EWR"_s);
        QSignalSpy inserted(w.page.rows(), &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(w.page.rows(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy changed(w.page.rows(), &QAbstractItemModel::dataChanged);
        QSignalSpy reset(w.page.rows(), &QAbstractItemModel::modelReset);
        const auto counts = [&] {
            QList<qsizetype> all{removed.size(), inserted.size(), changed.size(), reset.size()};
            removed.clear(), inserted.clear(), changed.clear();
            return all;
        };

        // A new offer in the journey on top: its header and its cards.
        w.add(u"OSL-EWR"_s, flight(u"again"_s));
        QCOMPARE(counts(), QList<qsizetype>({0, 0, 3, 0}));
        // One in the middle moves up, open as it was.
        w.clock.advance(1s);
        w.add(u"OSL-LHR"_s, flight(u"more"_s));
        QCOMPARE(w.rows().mid(0, 3), QStringList({u"OSL → LHR"_s, u"UTREISE"_s, u"more LHR"_s}));
        QCOMPARE(counts(), QList<qsizetype>({1, 1, 0, 0}));
        w.page.setColumns(1);
        QCOMPARE(w.rows().mid(2, 2), QStringList({u"more"_s, u"LHR"_s}));
        w.page.setColumns(3);
        w.page.filter()->setSortOrder(2);
        w.page.filter()->setSortOrder(0);
        w.state.reload();
        settle();
        counts();
        w.state.reload();
        settle();
        QCOMPARE(counts(), QList<qsizetype>({0, 0, 0, 0}));

        // A page out of sight waits.
        w.page.setShown(false);
        w.add(u"OSL-HND"_s);
        QCOMPARE(w.page.countText(), u"7 treff"_s);
        w.page.setShown(true);
        QCOMPARE(w.page.countText(), u"8 treff"_s);
    }

    void agesAreToldAnewEveryMinuteWhileShown() {
        PageWorld w;
        w.addWatcher();
        w.add(u"OSL-EWR"_s);
        w.page.setShown(true);
        w.page.toggle(w.page.journeys()[0].id);
        const auto found = [&w] {
            return w.shown(3, HitsModel::AgesRole).toList()[0].value<TripAge>().found;
        };
        QSignalSpy changed(w.page.rows(), &QAbstractItemModel::dataChanged);
        w.clock.advance(2min);
        QCOMPARE(changed.size(), 2);
        QCOMPARE(changed[0][2].value<QList<int>>(), QList<int>{HitsModel::AgesRole});
        QCOMPARE(found(), u"Funnet for 2 min siden"_s);
        w.page.setShown(false);
        w.clock.advance(2min);
        QCOMPARE(changed.size(), 2);
    }

    void clearedHitsCanComeBack() {
        PageWorld w;
        w.addWatcher();
        w.page.setShown(true);
        w.add(u"OSL-EWR"_s);
        w.add(u"OSL-BKK"_s);
        w.database.seen().upsertSeen(1, {}, {{Cabin::business}, {}});
        const auto before = w.state.matches();
        w.page.setConfirmClear(true);
        w.page.clearAll();
        settle();
        QVERIFY(!w.page.confirmClear());
        QVERIFY(w.state.matches().isEmpty());
        QVERIFY(!w.page.emptyText().isEmpty());
        QCOMPARE(w.state.searches().size(), 1);
        QCOMPARE(w.database.seen().seenCabins(1).size(), 1);
        QVERIFY(w.page.canUndo());
        w.page.undoClear();
        settle();
        QVERIFY(w.state.matches() == before);
        QVERIFY(!w.page.canUndo() && w.page.notice().isEmpty());

        w.page.clearAll();
        w.page.dismissNotice();
        w.page.undoClear();
        settle();
        QVERIFY(w.state.matches().isEmpty());
        w.page.clearAll();
        QVERIFY(w.page.notice().isEmpty());
    }

    void aFindIsRevealedWhateverHidesIt() {
        PageWorld w;
        w.page.setShown(true);
        w.add(u"OSL-EWR"_s);
        w.add(u"OSL-BKK"_s, [](Match& m) { m.key.flights = u"SK1"_s; });
        const QSignalSpy revealed(&w.page, &HitsPage::revealed);
        w.page.filter()->setWatcherIndex(1);
        w.page.reveal(u"no such#business"_s);
        QVERIFY(revealed.isEmpty());
        w.page.reveal(u"2027-03-05-OSL-BKK-SK1#business"_s);
        QCOMPARE(revealed.size(), 1);
        const HitsRow row = w.page.rows()->rows().at(revealed[0][0].toInt());
        QCOMPARE(Hits::key(row.cards.value(0).hit).text(), u"2027-03-05-OSL-BKK-SK1"_s);
    }

    void whatLeavesTheProgram() {
        PageWorld w;
        w.page.setShown(true);
        w.add(u"OSL-EWR"_s);
        w.add(u"OSL-EWR"_s, [](Match& m) { m.bookingURL = u"https://evil.test/"_s; });
        w.page.toggle(w.page.journeys()[0].id);
        const auto cards = w.shown(3, HitsModel::CardsRole).toList();
        QVERIFY(!cards[0].value<TripCard>().isBookable);
        QVERIFY(cards[1].value<TripCard>().isBookable);
        w.page.book(3, 0);
        w.page.book(3, 2);
        w.page.book(99, 0);
        QVERIFY(w.desktop.opened.isEmpty());
        w.page.book(3, 1);
        QCOMPARE(w.desktop.opened,
                 QList{QUrl(u"https://www.sas.no/book/flights/?search=OW_OSL-EWR"_s)});

        w.page.copy(3, 1);
        QCOMPARE(w.desktop.clipboard, u"OSL → EWR (OSL-EWR)\n05.03 11:00 – 05.03 13:10\n"
                                      "8t 10m · direkte · SK1\n"
                                      "Business · 2 seter · 60\u00a0000 poeng\n"
                                      "https://www.sas.no/book/flights/?search=OW_OSL-EWR"_s);
        w.page.copy(3, 0);
        QVERIFY(!w.desktop.clipboard.contains(u"evil"));
        w.page.exportTable();
        QCOMPARE(w.page.notice(),
                 u"Lagret i /home/kari/Nedlastinger/Tindra treff 2027-01-15.csv"_s);
        w.page.exportJourney(u"New York|Oslo"_s);
        QCOMPARE(w.desktop.downloads[1].first, u"OSL - EWR.ics"_s);
        QCOMPARE(w.desktop.downloads[1].second.count("BEGIN:VEVENT"), 2);
        w.desktop.diskIsFull = true;
        w.page.exportTable();
        QCOMPARE(w.page.notice(), u"Filen kunne ikke lagres."_s);
    }

    void calendarTimes() {
        for (const auto& [depart, arrive, lines] :
             {std::tuple(u"31.12 23:00"_s, u"01.01 06:10"_s,
                         "DTSTART:20271231T230000\r\nDTEND:20280101T061000"),
              // Over the date line, and of other words.
              {u"31.12 23:00"_s, u"31.12 12:00"_s, "DTSTART:20271231T230000\r\nDURATION:PT90M"},
              {u"?"_s, u"31.12 12:00"_s, "DTSTART;VALUE=DATE:20271231"}}) {
            JourneyGroup journey;
            Match match;
            const QDate travel(2027, 12, 31);
            match.key = {travel, {u"OSL"_s, u"EWR"_s}, u"SK1"_s};
            match.fromCity = QString(60, u'ø') + u"a;b,c\\d\ne"_s;
            match.depart = LocalTime::fromText(depart, travel);
            match.arrive = LocalTime::fromText(arrive, travel);
            match.durationMinutes = 90;
            journey.out = {match, match};
            Match undated = match;
            undated.key.date = QDate();
            journey.ret = {SoldOut{0, 1, match.key, {Cabin::first}, {}, {}}, undated};
            const QByteArray file = Export::calendar(journey, Site{}, instantFromSeconds(0));
            QCOMPARE(file.count("BEGIN:VEVENT\r\n"), 1);
            QVERIFY2(
                file.contains(QByteArray("DTSTAMP:19700101T000000Z\r\n") + lines + "\r\nSUMMARY"),
                file);
            for (const QByteArray& line : file.split('\n'))
                QVERIFY2(line.size() <= 76 && QString::fromUtf8(line).toUtf8() == line, line);
            QVERIFY(QByteArray(file)
                        .replace("\r\n ", "")
                        .contains("øa\\;b\\,c\\\\d\\ne → EWR · Økonomi\r\n"));
        }
        QCOMPARE(Export::fileName(u"../Oslo ⇄ A/B\u202e"_s, u"ics"_s), u"Oslo - AB.ics"_s);
    }
};

TINDRA_TEST(TestHitsPage)
#include "test_hits_page.moc"
