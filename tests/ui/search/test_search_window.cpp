// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/search/BoardingPassSearchCard.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

/// The form, used as a person would.
class TestSearchWindow : public QObject {
    Q_OBJECT

    struct Shown {
        explicit Shown(QSize size = {1120, 880})
            : page(u"Tindra.SearchFrame"_s, u"SearchFrame"_s,
                   {{u"form"_s, QVariant::fromValue(&form)}}, size) {
            world.airline.answer = [](auto&&...) {
                return std::optional<QByteArray>(R"({"outboundFlights":{}})");
            };
        }
        QList<Search> stored() { return world.database.watchers().listSearches(); }

        AppWorld world;
        BoardingPassSearchCard form{world.state, world.clock};
        PageWindow page;
    };

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "America/Los_Angeles"); }

    void aWatcherIsMadeWithTheKeyboard() {
        Shown shown;
        PageWindow& page = shown.page;
        page.click(u"originInput"_s);
        page.type(u", berg"_s);
        QVERIFY(page.isShown(u"Bergen"_s));
        page.key(Qt::Key_Return);
        QCOMPARE(shown.form.origin()->code(), u"OSL, BGO"_s);
        QVERIFY(page.isShown(u"Oslo · Bergen"_s));

        page.key(Qt::Key_Return);
        QCOMPARE(page.focused(), u"TIL — FLERE BYER"_s);
        page.type(u"new yo"_s);
        page.key(Qt::Key_Escape);
        QVERIFY(!page.find(u"Forslag"_s));
        page.key(Qt::Key_Down);
        page.key(Qt::Key_Down);
        const QString second = shown.form.destination()->suggestions()->suggestions().at(1).code;
        page.key(Qt::Key_Return);
        QCOMPARE(shown.form.destination()->code(), second);
        page.key(Qt::Key_Return);
        QCOMPARE(page.focused(), u"AVREISE-VINDU 16. jan. – 16. mar. 2027"_s);
        for (int i = 0; i < 20 && page.focused() != u"Søk"; ++i)
            page.key(Qt::Key_Tab);
        page.key(Qt::Key_Return);
        QCOMPARE(shown.stored().size(), 1);
        QCOMPARE(shown.stored().constFirst().origin, u"OSL,BGO"_s);
        QCOMPARE(page.focused(), u"TIL — FLERE BYER"_s);
        QVERIFY(!page.find(u"search"_s)->isEnabled());
    }

    void aWatcherIsMadeWithTheMouse() {
        Shown shown;
        PageWindow& page = shown.page;
        page.click(u"destinationInput"_s);
        page.type(u"berg"_s);
        page.hover(page.find(u"BGO Bergen"_s));
        page.click(u"BGO Bergen"_s);
        QCOMPARE(page.focused(), u"TIL — FLERE BYER"_s);
        page.click(u"Bytt avreise og reisemål"_s);
        QCOMPARE(shown.form.origin()->code() + u'>' + shown.form.destination()->code(),
                 u"BGO>OSL"_s);
        page.click(u"→ Én vei"_s);
        QVERIFY(!page.find(u"homebound"_s));
        page.click(u"Business"_s);
        page.click(u"First"_s);

        page.click(u"more"_s);
        page.type(u"Jul <b>hjem</b>"_s);
        page.key(Qt::Key_Tab);
        page.key(Qt::Key_Up);
        QVERIFY(page.isShown(u"Min. seter: 2"_s));
        page.click(u"Inkluder partnere (SkyTeam)"_s);
        page.key(Qt::Key_Escape);
        QVERIFY(!page.isShown(u"Maks stopp: 2"_s));

        page.click(u"search"_s);
        QCOMPARE(shown.stored().size(), 1);
        const Search watcher = shown.stored().constFirst();
        QCOMPARE(watcher.name, u"Jul <b>hjem</b>"_s);
        QCOMPARE(encodeCabins(watcher.cabins), u"first"_s);
        QCOMPARE(watcher.minSeats, 2);
        QVERIFY(!watcher.includePartners && !watcher.isRoundTrip());

        page.click(u"🌏 Asia i business"_s);
        QVERIFY(page.find(u"homebound"_s));
        QVERIFY(page.isShown(u"København"_s));
    }

    void windowsArePickedAndTyped() {
        Shown shown;
        PageWindow& page = shown.page;
        page.click(u"outbound"_s);
        page.click(u"fredag 22. januar 2027"_s);
        page.key(Qt::Key_Down);
        page.key(Qt::Key_Return);
        QVERIFY(!page.find(u"Fra"_s));
        QCOMPARE(shown.form.outbound()->text(), u"22. jan. – 29. jan. 2027"_s);

        page.click(u"homebound"_s);
        page.click(u"FraInput"_s);
        page.grab();
        page.type(u"28.12"_s);
        page.key(Qt::Key_Tab);
        page.grab();
        page.type(u"27.12.27"_s);
        page.key(Qt::Key_Return);
        QVERIFY(page.isShown(u"Til kan ikke være før Fra."_s));
        QVERIFY(page.isShown(u"28.12.2027"_s) && !page.isShown(u"27.12.27"_s));
        page.click(u"TilInput"_s);
        page.key(Qt::Key_A, Qt::ControlModifier);
        page.type(u"29.2"_s);
        page.key(Qt::Key_Return);
        QVERIFY(!page.isShown(u"Til kan ikke være før Fra."_s));
        page.key(Qt::Key_Escape);
        QCOMPARE(shown.form.homebound()->text(), u"28. des. – 29. feb. 2028"_s);
    }

    void theWarningIsSeenAndObeyed() {
        Shown shown({880, 600});
        PageWindow& page = shown.page;
        page.appearance.setReducesMotion(false);
        shown.form.destination()->setCode(u"JFK"_s);
        shown.form.homebound()->setWindow({2027, 6, 1}, {2027, 6, 20});
        page.click(u"search"_s);
        QTRY_VERIFY(page.isShown(shown.form.warningText()));
        // It pushes the button down, which is scrolled to.
        const QQuickItem* warning = page.find(u"warning"_s);
        const QQuickItem* search = page.find(u"search"_s);
        QTRY_VERIFY(warning->height() == warning->implicitHeight() &&
                    search->mapToScene({0, 46}).y() < 600);
        page.click(u"Bruk 1. jun. – 20. jun. 2027 for utreisen også"_s);
        QCOMPARE(shown.stored().size(), 1);
        QCOMPARE(shown.stored().constFirst().dateFrom, QDate(2027, 6, 1));
        QTRY_VERIFY(!page.isShown(shown.form.warningText()));
        QCOMPARE(page.focused(), u"TIL — FLERE BYER"_s);
        page.click(u"Bytt avreise og reisemål"_s);
        QTRY_COMPARE(page.find(u"Bytt avreise og reisemål"_s)->property("iconRotation"), 180);
    }

    void nothingTypedBreaksTheForm() {
        Shown shown({880, 600});
        const qreal height = shown.page.find(u"Søk"_s)->mapToScene({}).y();
        shown.form.origin()->setCode(u"مطار, שדה"_s);
        shown.form.destination()->setCode(QStringList(500, u"JFK"_s).join(u", "_s));
        shown.form.setName(QString(5000, u'W'));
        shown.page.grab();
        const QQuickItem* search = shown.page.find(u"Søk"_s);
        QVERIFY(search->mapToScene({}).y() < height + 40);
        for (const QString& field : {u"originInput"_s, u"destinationInput"_s})
            QCOMPARE(shown.page.find(field)->height(), 44);
        shown.page.click(u"destinationInput"_s);
        shown.page.type(QString(200, u'x'));
        shown.page.click(u"search"_s);
        QCOMPARE(Search::codes(shown.stored().constFirst().destination).size(), 500);
        QCOMPARE(shown.stored().constFirst().name.size(), 5000);
    }
};

TINDRA_UI_TEST(TestSearchWindow)
#include "test_search_window.moc"
