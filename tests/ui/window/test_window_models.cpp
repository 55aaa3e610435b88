// SPDX-License-Identifier: MIT
#include "tests/support/TestProgram.h"
#include "tests/ui/window/WindowWorld.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestWindowModels : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void theDashboardBeforeTheFirstRound() {
        WindowWorld world;
        QCOMPARE(world.dashboard.lastCheckValue(), u"–"_s);
        QCOMPARE(world.dashboard.lastCheckSub(), u"ikke kjørt enda"_s);
        QCOMPARE(world.dashboard.watchersValue(), u"0"_s);
        QCOMPARE(world.dashboard.pausedText(), u"aktive"_s);
        QCOMPARE(world.dashboard.hitsValue(), u"0"_s);
        QCOMPARE(world.dashboard.hitsText(), u"ingen nye i dag"_s);
        QVERIFY(!world.dashboard.hasNewHits());
    }

    void theDashboardCounts() {
        WindowWorld world;
        for (int i = 0; i < 5; ++i)
            world.addWatcher();
        world.database.watchers().toggleSearch(2);
        world.database.watchers().toggleSearch(3);
        const QSignalSpy changed(&world.dashboard, &DashboardView::changed);
        world.lastPollWas(1284);
        QVERIFY(!changed.isEmpty());
        QCOMPARE(world.dashboard.watchersValue(), u"3"_s);
        QCOMPARE(world.dashboard.pausedText(), u"aktive · 2 pauset"_s);
        QCOMPARE(world.dashboard.lastCheckValue(), u"12:00"_s);
        QCOMPARE(world.dashboard.lastCheckSub(), u"1\u00a0284 reiser gjennomgått"_s);
        world.addMatch();
        QCOMPARE(world.dashboard.hitsValue(), u"1"_s);
        QCOMPARE(world.dashboard.hitsText(), u"nye i dag"_s);
    }

    void errorsAreShownUnlessNobodyIsSignedIn() {
        WindowWorld world;
        world.lastPollWas(0, {u"søk 3: SAS-søk krever avreisedato."_s});
        QCOMPARE(world.dashboard.errorText(), u"søk 3: SAS-søk krever avreisedato."_s);
        world.lastPollWas(0, {u"a"_s, u"b"_s, u"c"_s});
        QCOMPARE(world.dashboard.errorText(), u"3 søk feilet ved siste sjekk — se Overvåkere."_s);
        world.session.setLoggedOut(false);
        QCOMPARE(world.dashboard.errorText(), QString());
    }

    void thePanelTellsHowTheHuntGoes() {
        WindowWorld world;
        QCOMPARE(world.panel.headline(), u"Ingen aktive overvåkere"_s);
        QCOMPARE(world.panel.countText(), u"0 overvåkere"_s);
        QVERIFY(!world.panel.hasLatest());
        world.addWatcher();
        QCOMPARE(world.panel.headline(), u"Jakten er i gang"_s);
        QCOMPARE(world.panel.countText(), u"1 overvåker"_s);
        world.addWatcher();
        world.airline.answer = [](const QString&, const QString&, const QString&) {
            return std::optional(QByteArray(R"({"outboundFlights":{}})"));
        };
        world.panel.checkNow();
        QCOMPARE(world.panel.countText(), u"2 overvåkere · sjekker nå…"_s);
        QTRY_COMPARE(world.panel.countText(), u"2 overvåkere"_s);

        QCOMPARE(world.panel.warning(), QString());
        const QSignalSpy changed(&world.panel, &MenuBarPanel::changed);
        world.session.setSiteUnreachable(true);
        QCOMPARE(world.panel.warning(), u"Får ikke kontakt med SAS — prøver igjen snart"_s);
        world.session.setSiteUnreachable(false);
        QCOMPARE(world.panel.warning(), QString());
        world.session.setLoggedOut(false);
        QCOMPARE(world.panel.warning(), u"Ikke innlogget hos SAS — søkene får ingen data"_s);
        QCOMPARE(changed.size(), 3);
    }

    void theLatestFindIsTheNewestThatCanBeBooked() {
        WindowWorld world;
        world.addMatch([](Match& m) { m.toCity = u"Boston"_s; });
        world.addSoldOut();
        QCOMPARE(world.panel.latestRoute(), u"Oslo → Boston"_s);
        QCOMPARE(world.panel.latestText(), u"Business · 2 seter · 60\u00a0000 poeng"_s);
        QVERIFY(world.panel.canBook());
        world.panel.book();
        QCOMPARE(world.desktop.opened.size(), 1);
        world.addMatch([](Match& m) {
            m.fromCity = m.toCity = QString();
            m.bookingURL = u"https://evil.example/"_s;
        });
        QCOMPARE(world.panel.latestRoute(), u"OSL → EWR"_s);
        QVERIFY(!world.panel.canBook());
        world.panel.book();
        QCOMPARE(world.desktop.opened.size(), 1);
    }

    void theSignInIsCheckedWhenNoRoundWill() {
        WindowWorld world;
        world.airline.verified = SASLoginStatus::loggedIn(world.clock.now());
        RootView root(world.state, world.airline, false);
        root.start();
        root.start();
        QCOMPARE(world.airline.verifications, 1);
        world.addWatcher();
        RootView busy(world.state, world.airline, false);
        busy.start();
        QCOMPARE(world.airline.verifications, 1);
        settle();
    }

    void theFrameFollowsTheState() {
        WindowWorld world;
        RootView root(world.state, world.airline, false);
        root.select(RootView::Hits);
        QCOMPARE(root.selection(), int(RootView::Hits));
        root.select(17);
        QCOMPARE(root.selection(), int(RootView::Dashboard));
        QCOMPARE(root.hitsBadge(), QString());
        QCOMPARE(root.notice(), QString());
        world.addMatch();
        QCOMPARE(root.hitsBadge(), u"1 nye"_s);
    }

    void closingTheWindowWithATrayGoesOnAndSaysSoOnce() {
        WindowWorld world;
        LifeCycle& life = world.life;
        life.showWindow();
        QVERIFY(life.isWindowShown());
        life.closeWindow();
        QVERIFY(!life.isWindowShown());
        QVERIFY(!life.isAsking());
        QCOMPARE(world.center.posted.size(), 1);
        life.showWindow();
        life.closeWindow();
        QCOMPARE(world.center.posted.size(), 1);
        QCOMPARE(world.tray.status, u"Ingen aktive overvåkere · 0 overvåkere"_s);
        // A tray that goes away must not take the program with it.
        world.tray.isThere = false;
        Q_EMIT world.tray.availabilityChanged();
        QVERIFY(life.isWindowShown());
    }

    void whatCannotBeNotifiedIsAsked_data() {
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<bool>("isServiceThere");
        QTest::newRow("switched off") << false << true;
        QTest::newRow("no service") << true << false;
    }
    void whatCannotBeNotifiedIsAsked() {
        QFETCH(bool, isOn);
        QFETCH(bool, isServiceThere);
        WindowWorld world;
        world.database.settings().set(Setting::nativeNotify, isOn);
        world.center.isThere = isServiceThere;
        world.life.showWindow();
        world.life.closeWindow();
        QVERIFY(world.life.isAsking());
        QVERIFY(world.life.isWindowShown());
        QVERIFY(world.life.question().contains(u"ved klokken"_s));
        world.life.stay();
        // Nobody has agreed to anything.
        world.life.closeWindow();
        QVERIFY(world.life.isAsking());
        world.life.keepHunting();
        QVERIFY(!world.life.isWindowShown());
        world.life.showWindow();
        world.life.closeWindow();
        QVERIFY(!world.life.isWindowShown());
        QVERIFY(world.center.posted.isEmpty());
    }
};

TINDRA_TEST(TestWindowModels)
#include "test_window_models.moc"
