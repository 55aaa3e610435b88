// SPDX-License-Identifier: MIT
// The main window and the panel, used as a person would.
#include "tests/support/RawSql.h"
#include "tests/ui/support/PageWindow.h"
#include "tests/ui/window/WindowWorld.h"
#include "ui/controls/Controls.h"
#include "ui/window/PanelPlacement.h"
#include "ui/window/Windows.h"

#include <QQmlEngine>
#include <QScreen>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void theSidebarLeadsToThePages() {
        WindowWorld world;
        world.addWatcher();
        world.addMatch();
        PageWindow page(u"Tindra.Window"_s, u"MainContent"_s, world.content());
        QVERIFY(page.isShown(u"Hvor vil du reise?"_s));
        QVERIFY(page.isShown(u"1 nye"_s));
        page.click(u"sidebarOvervåkere"_s);
        QVERIFY(page.isShown(u"Sjekk alle nå"_s));
        QVERIFY(!page.isShown(u"Hvor vil du reise?"_s));
        page.click(u"sidebarTreff"_s);
        QTRY_VERIFY(page.isShown(u"Oslo → New York"_s));
        page.click(u"sidebarInnstillinger"_s);
        QVERIFY(page.isShown(u"SJEKK-INTERVALL"_s));
        // A password that was typed and not stored does not outlive the page.
        world.details.setEbPassword(u"hemmelig"_s);
        page.key(Qt::Key_1, Qt::ControlModifier);
        QVERIFY(page.isShown(u"Hvor vil du reise?"_s));
        QVERIFY(world.details.ebPassword().isEmpty());
        page.key(Qt::Key_3, Qt::ControlModifier);
        QVERIFY(page.isShown(u"Tøm treff"_s));
    }

    void theDashboardLeadsOn() {
        WindowWorld world;
        world.addWatcher();
        world.lastPollWas(1284, {u"søk 1: SAS-søk krever avreisedato."_s});
        PageWindow page(u"Tindra.Window"_s, u"MainContent"_s, world.content());
        QVERIFY(page.isShown(u"søk 1: SAS-søk krever avreisedato."_s));
        QVERIFY(page.isShown(u"1\u00a0284 reiser gjennomgått"_s));
        page.click(u"errorStrip"_s);
        QCOMPARE(world.root.selection(), int(RootView::Watchers));
        world.root.select(RootView::Dashboard);
        page.click(u"statHits"_s);
        QCOMPARE(world.root.selection(), int(RootView::Hits));
        world.root.select(RootView::Dashboard);
        // Signed out, that is what is said, here and in the sidebar.
        world.session.setLoggedOut(false);
        QVERIFY(!page.isShown(u"søk 1: SAS-søk krever avreisedato."_s));
        page.click(u"bannerLogin"_s);
        page.click(u"cardLogin"_s);
        QCOMPARE(world.loginsOpened, 2);
    }

    void whatIsWrongIsSaidOnEveryPage() {
        WindowWorld world(true);
        PageWindow page(u"Tindra.Window"_s, u"MainContent"_s, world.content(), {880, 600});
        QVERIFY(page.find(u"demoNote"_s));
        QVERIFY(!page.find(u"notice"_s));
        QVERIFY(page.isShown(u"Dashboard"_s));
        world.database.safekeeping().set(Kept::storageNotice, u"Databasen var skadet."_s);
        runOn(world.dir.path(), "CREATE TRIGGER full BEFORE INSERT ON kv "
                                "BEGIN SELECT RAISE(ABORT, 'full'); END");
        world.database.safekeeping().note(Kept::toldBackground);
        settle();
        world.root.select(RootView::Settings);
        QVERIFY(page.isShown(*world.database.problem()));
        QVERIFY(!page.find(u"dismissNotice"_s));
        // What has passed can be put away, what is still wrong cannot.
        runOn(world.dir.path(), "DROP TRIGGER full");
        world.database.recover();
        settle();
        QVERIFY(page.isShown(u"Databasen var skadet."_s));
        page.click(u"dismissNotice"_s);
        QVERIFY(!page.find(u"notice"_s));
        QCOMPARE(world.root.notice(), QString());
    }

    void closingAsksWhereThereIsNoTray() {
        WindowWorld world;
        world.tray.isThere = false;
        world.life.showWindow();
        PageWindow page(u"Tindra.Window"_s, u"MainContent"_s, world.content());
        const QSignalSpy quit(&world.life, &LifeCycle::quitRequested);
        // The question is seen where the window was minimised, too.
        const QSignalSpy raised(&world.life, &LifeCycle::raiseRequested);
        world.life.closeWindow();
        QCOMPARE(raised.size(), 1);
        QTRY_VERIFY(page.isShown(u"Fortsette jakten i bakgrunnen?"_s));
        page.key(Qt::Key_Escape);
        QTRY_VERIFY(!world.life.isAsking());
        QVERIFY(world.life.isWindowShown());
        world.life.closeWindow();
        QTRY_VERIFY(page.isShown(u"Fortsett i bakgrunnen"_s));
        page.click(u"Fortsett i bakgrunnen"_s);
        QTRY_VERIFY(!world.life.isWindowShown());
        QVERIFY(quit.isEmpty());
        world.life.closeWindow();
        QTRY_VERIFY(page.find(u"quit"_s));
        page.click(u"quit"_s);
        QCOMPARE(quit.size(), 1);
        // A second start of Tindra asks for the window again.
        world.life.start(true);
        QVERIFY(!world.life.isWindowShown());
        world.life.showWindow();
        QVERIFY(world.life.isWindowShown() && !world.life.isAsking());
    }

    void withoutAWayBackThereIsOnlyToStayOrQuit() {
        WindowWorld world;
        world.tray.isThere = false;
        LifeCycle life(world.tray, world.panel, world.notifier, world.database.safekeeping(),
                       LifeCycle::SecondStart::isLost);
        QVariantMap content = world.content();
        content[u"life"_s] = QVariant::fromValue(&life);
        life.start(true);
        QVERIFY(life.isWindowShown());
        PageWindow page(u"Tindra.Window"_s, u"MainContent"_s, content);
        life.closeWindow();
        QTRY_VERIFY(page.isShown(u"Avslutte jakten?"_s));
        QVERIFY(page.isShown(life.question()) && !life.question().contains(u"på nytt"_s));
        QVERIFY(page.find(u"quit"_s));
        QVERIFY(!page.isShown(u"Fortsett i bakgrunnen"_s));
        page.key(Qt::Key_Return);
        page.key(Qt::Key_Escape);
        QTRY_VERIFY(!life.isAsking());
        life.keepHunting();
        QVERIFY(life.isWindowShown());
    }

    void theOnboardingComesFirst() {
        WindowWorld world;
        world.database.settings().set(Setting::onboarded, false);
        AppState state(world.database, world.worker, world.finds, world.clock);
        RootView root(state, world.airline, false);
        OnboardingView onboarding(state, world.pill, world.clock);
        QVariantMap content = world.content();
        content[u"root"_s] = QVariant::fromValue(&root);
        content[u"onboarding"_s] = QVariant::fromValue(&onboarding);
        PageWindow page(u"Tindra.Window"_s, u"MainContent"_s, content);
        QVERIFY(page.isShown(u"Kom i gang"_s));
        page.click(u"Start jakten →"_s);
        QTRY_VERIFY(page.isShown(u"Hvor vil du reise?"_s));
    }

    void thePanel() {
        WindowWorld world;
        world.addWatcher();
        world.addMatch();
        PageWindow page(u"Tindra.Window"_s, u"MenuBarPanel"_s,
                        {{u"panel"_s, QVariant::fromValue(&world.panel)}}, {320, 260});
        QVERIFY(page.isShown(u"Jakten er i gang"_s));
        QVERIFY(page.isShown(u"Oslo → New York"_s));
        page.click(u"panelBook"_s);
        QCOMPARE(world.desktop.opened.size(), 1);
        const QSignalSpy opened(&world.panel, &MenuBarPanel::openRequested);
        page.click(u"panelOpen"_s);
        QCOMPARE(opened.size(), 1);
        world.session.setLoggedOut(false);
        QVERIFY(page.isShown(u"Ikke innlogget hos SAS — søkene får ingen data"_s));
    }

    void thePanelGrowsInItsPlace() {
        WindowWorld world;
        FakeAppearance appearance;
        Theme theme(appearance);
        QQmlEngine engine;
        setUpEngine(engine, theme);
        PanelWindow panel(engine, theme, {{u"panel"_s, QVariant::fromValue(&world.panel)}});
        const QRect screen = panel.screen()->availableGeometry();
        const QPoint icon(screen.center().x(), screen.bottom() - 10);
        const auto isAboveTheIcon = [&] { return panel.geometry().bottom() + 9 == icon.y(); };
        panel.toggle(icon);
        QTRY_VERIFY(isAboveTheIcon());
        const int low = panel.height();
        panel.toggle(icon);
        QVERIFY(!panel.isVisible());
        world.addMatch();
        panel.toggle(icon);
        QTRY_VERIFY(panel.height() > low);
        QTRY_VERIFY(isAboveTheIcon());
        world.session.setLoggedOut(false);
        const int high = panel.height();
        QTRY_VERIFY(panel.height() > high);
        QTRY_VERIFY(isAboveTheIcon());
        panel.hide();

        QWindow window;
        window.setGeometry(100, 50, 600, 400);
        panel.toggleIn(window);
        QCOMPARE(panel.geometry().topRight(), QPoint(100 + 600 - 8 - 1, 50 + 8));
        QCOMPARE(panel.transientParent(), &window);
    }

    void thePanelIsWholeAndBesideItsIcon() {
        const auto place = [](std::optional<QPoint> icon) {
            return panelPlacement(icon, QRect(0, 0, 1400, 1000), QSize(320, 200));
        };
        QCOMPARE(place(QPoint(900, 10)), QPoint(740, 18));
        QCOMPARE(place(QPoint(900, 990)), QPoint(740, 782));
        QCOMPARE(place(QPoint(1395, 990)), QPoint(1072, 782));
        QCOMPARE(place(QPoint(3, 5)), QPoint(8, 13));
        QCOMPARE(place({}), QPoint(1072, 8));
    }
};

TINDRA_UI_TEST(TestWindow)
#include "test_window.moc"
