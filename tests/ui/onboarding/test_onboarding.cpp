// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/session/SessionModel.h"

using namespace Qt::StringLiterals;

namespace {

struct OnboardingWorld : AppWorld {
    OnboardingWorld() {
        airline.answer = [](const QString&, const QString&, const QString&) {
            return std::nullopt;
        };
    }

    SessionState session;
    int loginsOpened = 0;
    StandBack standBack{database.safekeeping(), clock};
    SessionModel login{session, standBack, {[this] { ++loginsOpened; }, [] {}}};
    OnboardingView view{state, login, clock};

    void signIn() { session.setLoginStatus(SASLoginStatus::loggedIn(clock.now())); }
    QList<StepState> steps() const {
        return {view.connectionStep().state, view.routeStep().state, view.notificationStep().state};
    }
};

} // namespace

class TestOnboarding : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void stepsFollowEachOther_data() {
        using enum StepState;
        QTest::addColumn<bool>("opened");
        QTest::addColumn<bool>("signedIn");
        QTest::addColumn<int>("watchers");
        QTest::addColumn<QList<StepState>>("states");
        QTest::addColumn<QString>("line");
        const QString start = u"Start med en ferdig pakke — eller bygg din egen etterpå."_s;
        const QString rest = u" er i gang — første sjekk kjører allerede."_s;
        QTest::newRow("nothing") << false << false << 0 << QList{active, upcoming, done} << start;
        QTest::newRow("session of before")
            << false << true << 0 << QList{active, upcoming, done} << start;
        QTest::newRow("window open")
            << true << false << 0 << QList{active, upcoming, done} << start;
        QTest::newRow("signed in") << true << true << 0 << QList{done, active, done} << start;
        QTest::newRow("route only")
            << false << false << 1 << QList{active, done, done} << u"1 overvåker"_s + rest;
        QTest::newRow("all") << true << true << 2 << QList{done, done, done}
                             << u"2 overvåkere"_s + rest;
    }
    void stepsFollowEachOther() {
        QFETCH(bool, opened);
        QFETCH(bool, signedIn);
        QFETCH(int, watchers);
        OnboardingWorld world;
        if (opened)
            world.view.openLogin();
        if (signedIn)
            world.signIn();
        for (int i = 0; i < watchers; ++i)
            world.addWatcher();
        QTEST(world.steps(), "states");
        QTEST(world.view.routeStep().line(), "line");
        QCOMPARE(world.view.notificationStep().line(), world.view.notificationStep().text);
    }

    void itIsGoneThrough() {
        OnboardingWorld world;
        PageWindow page(u"Tindra.Onboarding"_s, u"OnboardingView"_s,
                        {{u"model"_s, QVariant::fromValue(&world.view)}}, {880, 600});
        // A step may be taken before the one above it.
        page.click(u"preset1"_s);
        QVERIFY(page.isShown(u"1 overvåker er i gang — første sjekk kjører allerede."_s));
        settle();
        QVERIFY2(!world.airline.looked.isEmpty(), "a round has begun");

        page.click(u"openLogin"_s);
        QCOMPARE(world.loginsOpened, 1);
        world.signIn();
        QVERIFY(page.isShown(u"Tilkoblet — søkene kjører nå skjult i bakgrunnen."_s));
        QVERIFY(!page.find(u"openLogin"_s));

        // On with the keyboard, from where the next step is.
        QCOMPARE(page.focused(), u"🇺🇸 USA i business"_s);
        page.key(Qt::Key_Return);
        page.key(Qt::Key_Tab);
        page.key(Qt::Key_Tab);
        QCOMPARE(page.focused(), u"Start jakten →"_s);
        page.click(u"start"_s);
        QVERIFY(world.state.onboarded());
        settle();
        page.verifyNoWarnings();

        Search usa;
        usa.id = 2;
        usa.name = u"USA i business"_s;
        usa.origin = u"OSL"_s;
        usa.destination = u"JFK,EWR,ORD,IAD,SFO,LAX,BOS,MIA"_s;
        usa.dateFrom = usa.returnDateFrom = QDate(2027, 1, 16);
        usa.dateTo = usa.returnDateTo = QDate(2027, 3, 16);
        settle();
        QCOMPARE(world.state.searches().size(), 2);
        Search stored = world.state.searches().constLast();
        stored.lastChecked.reset();
        QCOMPARE(stored, usa);
        QCOMPARE(world.state.searches().constFirst().origin, u"CPH"_s);
        QCOMPARE(world.state.searches().constFirst().destination, u"BKK,HND,NRT,SIN,PVG"_s);
    }
};

TINDRA_UI_TEST(TestOnboarding)
#include "test_onboarding.moc"
