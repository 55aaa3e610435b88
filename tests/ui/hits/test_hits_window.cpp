// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/support/FakeDesktop.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/hits/HitsPage.h"

using namespace Qt::StringLiterals;

namespace {

struct WindowWorld : AppWorld {
    FakeDesktop desktop;
    HitsPage page{state, database.offers(), desktop, clock, Site{}};
    std::unique_ptr<PageWindow> window;

    WindowWorld() {
        http.answer = [](const HttpRequest&) { return std::nullopt; };
        addWatcher(u"EWR"_s, [](Search& s) { s.returnDateTo = QDate(2027, 4, 1); });
    }
    /// An offer whose cities are called as its airports.
    void add(const QString& from, const QString& to,
             const std::function<void(Match&)>& change = {}) {
        addMatch([&](Match& m) {
            m.key = {{2027, 3, 5}, {from, to}, u"SK%1"_s.arg(++m_number)};
            m.fromCity = from;
            m.toCity = to;
            if (change)
                change(m);
        });
        settle();
    }
    void show(QSize size = {1120, 880}) {
        window = std::make_unique<PageWindow>(u"Tindra.Hits"_s, u"HitsView"_s,
                                              QVariantMap{{u"page"_s, QVariant::fromValue(&page)}},
                                              size);
    }
    double scrolled() { return window->find(u"list"_s)->property("contentY").toDouble(); }
    /// Where something is in the window.
    double top(const QString& name) { return window->find(name)->mapToScene({}).y(); }

private:
    int m_number = 0;
};

} // namespace

class TestHitsWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPersonNarrowsOpensAndBooks() {
        WindowWorld w;
        w.show();
        QTRY_VERIFY(w.window->isShown(
            u"Ingen treff ennå. Når et søk finner ny saver-plass, dukker reisen opp her."_s));
        QVERIFY(!w.window->find(u"clear"_s)->isEnabled());
        w.add(u"OSL"_s, u"EWR"_s);
        w.add(u"EWR"_s, u"OSL"_s, [](Match& m) { m.arrive = {{2027, 3, 6}, {7, 15}}; });
        w.addSoldOut(u"2027-03-05-OSL-BKK-SK9"_s);
        settle();
        QTRY_VERIFY(w.window->isShown(u"🇺🇸 USA & Canada"_s));
        QTRY_VERIFY(w.window->isShown(u"1 utsolgt"_s));
        w.window->click(u"OSL ⇄ EWR"_s);
        for (const QString& text :
             {u"UTREISE"_s, u"HJEMREISE"_s, u"Utreise"_s, u"Hjemreise"_s, u"+1"_s, u"OSL · 05.03"_s,
              u"Business · 2 seter · 60\u00a0000 poeng"_s, u"Funnet akkurat nå"_s})
            QTRY_VERIFY2(w.window->isShown(text), qPrintable(text));
        // Places of a row that have no card are empty.
        QCOMPARE(w.window->findAll(u"book"_s).size(), 2);
        w.window->click(u"book"_s);
        QCOMPARE(w.desktop.opened.size(), 1);
        w.window->click(u"copy"_s);
        QVERIFY(w.desktop.clipboard.startsWith(u"OSL → EWR"));
        QTRY_VERIFY(w.window->isShown(u"Treffet er kopiert."_s));
        w.window->click(u"exportJourney"_s);
        w.window->click(u"exportTable"_s);
        QCOMPARE(w.desktop.downloads.size(), 2);
        w.window->click(u"hideSoldOut"_s);
        QTRY_VERIFY(w.window->isShown(u"2 treff"_s) && !w.window->isShown(u"1 utsolgt"_s));
        w.window->click(u"Billigst"_s);
        QTRY_VERIFY(!w.window->isShown(u"🇺🇸 USA & Canada"_s));
        w.window->click(u"watcherPicker"_s);
        w.window->click(w.window->findAll(u"OSL → EWR"_s).constLast());
        QCOMPARE(w.page.filter()->watcherIndex(), 1);
        w.page.filter()->setWatcherIndex(0);
        QTRY_VERIFY(w.window->isShown(u"Alle overvåkere"_s));
        w.window->click(u"OSL ⇄ EWR"_s);
        QTRY_VERIFY(!w.window->isShown(u"UTREISE"_s));
    }

    void clearingIsAskedForAndCanBeUndone() {
        WindowWorld w;
        w.add(u"OSL"_s, u"EWR"_s);
        w.show({880, 600});
        w.window->click(u"clear"_s);
        QTRY_VERIFY(w.window->isShown(u"Slette alle treff?"_s));
        w.window->key(Qt::Key_Escape);
        QVERIFY(!w.page.confirmClear());
        QTRY_VERIFY(w.window->isShown(u"1 treff"_s));
        w.window->click(u"clear"_s);
        w.window->click(u"Slett alle treff"_s);
        settle();
        QTRY_VERIFY(w.window->isShown(u"0 treff"_s));
        w.window->click(u"Angre"_s);
        settle();
        QTRY_VERIFY(w.window->isShown(u"OSL → EWR"_s));
        QTRY_VERIFY(!w.window->isShown(u"Angre"_s));
    }

    void theKeyboardIsEnough() {
        WindowWorld w;
        w.add(u"OSL"_s, u"BKK"_s);
        w.add(u"OSL"_s, u"EWR"_s);
        w.show();
        QQuickItem* list = w.window->find(u"list"_s);
        list->forceActiveFocus(Qt::TabFocusReason);
        w.window->key(Qt::Key_Return);
        QTRY_VERIFY(w.window->isShown(u"UTREISE"_s));
        w.window->key(Qt::Key_Tab);
        QCOMPARE(w.window->focused(), u"Til kalenderen"_s);
        w.window->key(Qt::Key_Tab);
        w.window->key(Qt::Key_Return);
        QCOMPARE(w.desktop.opened.size(), 1);
        w.window->key(Qt::Key_Tab);
        w.window->key(Qt::Key_Space);
        QVERIFY(!w.desktop.clipboard.isEmpty());
        // From within a card on to the next journey, and back.
        w.window->key(Qt::Key_Down);
        QVERIFY(w.window->focused().startsWith(u"OSL → EWR"));
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right})
            w.window->key(key);
        QTRY_VERIFY(w.window->isShown(u"OSL → BKK"_s) && w.window->isShown(u"BKK · 05.03"_s));
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Return, Qt::Key_Return})
            w.window->key(key);
        QTRY_VERIFY(!w.window->isShown(u"BKK · 05.03"_s));
        QCOMPARE(w.desktop.opened.size(), 2);
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Left})
            w.window->key(key);
        QTRY_VERIFY(!w.window->isShown(u"UTREISE"_s));
    }

    void newsLeavesThePlaceAlone() {
        WindowWorld w;
        for (char a = 'A'; a <= 'Z'; ++a)
            w.add(u"OSL"_s, QString(3, QLatin1Char(a)));
        w.page.filter()->setSortOrder(1);
        w.show({1120, 600});
        w.page.toggle(w.page.journeys()[12].id);
        QQuickItem* list = w.window->find(u"list"_s);
        QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, 13), Q_ARG(int, 0));
        const QString shown = std::get<Match>(w.page.journeys()[12].out[0]).toCity + u" · 05.03"_s;
        QTRY_VERIFY(w.window->find(shown));
        const double before = w.top(shown);
        w.add(u"OSL"_s, u"QQ1"_s);
        w.add(u"OSL"_s, u"CCC"_s);
        w.add(u"OSL"_s, u"ZZZ"_s);
        QCOMPARE(w.window->find(u"count"_s)->property("text"), u"29 treff"_s);
        w.window->grab();
        QCOMPARE(w.top(shown), before);
        QVERIFY(w.scrolled() != 0);
    }

    void strangeOffersAreDrawn() {
        WindowWorld w;
        w.add({}, {}, [](Match& m) {
            m = Match();
            m.searchId = 1;
            m.seats = -3;
        });
        w.add(u"OSL"_s, u"EWR"_s, [](Match& m) {
            m.key.flights = QString(5000, u'x');
            m.stops = Stops{1, {m.key.flights}};
            m.depart = LocalTime::fromText(m.key.flights, {});
            m.fromCity = u"<img src='file:///x'>ירושלים"_s;
            m.points = 0;
            m.bookingURL = u"file:///etc/passwd"_s;
        });
        w.show({660, 600});
        for (const JourneyGroup& journey : QList(w.page.journeys()))
            w.page.toggle(journey.id);
        QTRY_VERIFY(w.window->find(u"book"_s));
        w.window->click(u"book"_s);
        QTRY_VERIFY(w.window->isShown(u"<img src='file:///x'>ירושלים → EWR"_s));
        QVERIFY(w.desktop.opened.isEmpty());
        // Nothing reaches over the edge of the window.
        for (QQuickItem* item : w.window->findAll(u"book"_s))
            QVERIFY(item->mapToScene({item->width(), 0}).x() < 660);
    }
};

TINDRA_UI_TEST(TestHitsWindow)
#include "test_hits_window.moc"
