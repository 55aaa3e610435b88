// SPDX-License-Identifier: MIT
// The settings screen as a person uses it.
#include "tests/support/RawSql.h"
#include "tests/ui/settings/SettingsWorld.h"
#include "tests/ui/support/PageWindow.h"

using namespace Qt::StringLiterals;

namespace {

struct SettingsPage : SettingsWorld {
    std::unique_ptr<PageWindow> page;

    void show() {
        page = std::make_unique<PageWindow>(u"Tindra.Settings"_s, u"SettingsView"_s,
                                            QVariantMap{{u"model"_s, QVariant::fromValue(&view)}},
                                            QSize(880, 1400));
        settle();
    }
    bool isEnabled(const QString& name) { return page->find(name)->isEnabled(); }
};

} // namespace

class TestSettingsWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void detailsAreTyped() {
        SettingsPage world;
        world.storeDetails(u"601234567"_s, u"gammel"_s);
        world.show();
        PageWindow& page = *world.page;
        QVERIFY(page.isShown(u"601234567"_s));
        QVERIFY(page.isShown(SignInDetails::passwordMask()));
        QVERIFY(page.isShown(u"Detaljer lagret i nøkkelringen ✓"_s));
        QVERIFY(!world.isEnabled(u"saveDetails"_s));

        page.click(u"ebPassword"_s);
        page.type(u"ny"_s);
        QVERIFY(!page.isShown(u"Detaljer lagret i nøkkelringen ✓"_s));
        QVERIFY2(page.isShown(u"••"_s), "the mask has gone, and the password is not shown");
        page.click(u"saveDetails"_s);
        settle();
        QCOMPARE(world.inKeychain(), (Credentials{u"601234567"_s, u"ny"_s}));
        QVERIFY(page.isShown(u"Detaljer lagret i nøkkelringen ✓"_s));

        page.click(u"ebUser"_s);
        page.key(Qt::Key_A, Qt::ControlModifier);
        page.type(u"kari"_s);
        page.key(Qt::Key_Return);
        settle();
        QCOMPARE(world.inKeychain(), (Credentials{u"kari"_s, u"ny"_s}));
        page.verifyNoWarnings();
    }

    void signingIn() {
        SettingsPage world;
        world.show();
        world.page->click(u"openLogin"_s);
        QCOMPARE(world.loginsOpened, 1);
        world.airline.verified = SASLoginStatus::loggedOut();
        world.page->click(u"checkLogin"_s);
        settle();
        QCOMPARE(world.airline.verifications, 1);
        world.session.setLoginStatus(SASLoginStatus::checking());
        QVERIFY(!world.isEnabled(u"checkLogin"_s));
        QVERIFY(world.page->isShown(u"Sjekker innlogging hos SAS…"_s));
        world.page->verifyNoWarnings();
    }

    void switchesAndChoices() {
        SettingsPage world;
        world.show();
        PageWindow& page = *world.page;
        page.click(u"testNotification"_s);
        const Notification example{u"✈️ Tindra"_s,
                                   u"Slik ser et varsel ut når en saver-plass dukker opp."_s};
        QCOMPARE(world.center.posted, QList{example});

        const Settings& settings = world.database.settings();
        for (const auto& [name, setting] : {std::pair(u"notifySwitch"_s, Setting::nativeNotify),
                                            {u"notifySoldOutSwitch"_s, Setting::notifySoldOut},
                                            {u"shareHitsSwitch"_s, Setting::shareHits}}) {
            page.click(name);
            QVERIFY(!settings.isOn(setting));
        }
        QVERIFY(!world.isEnabled(u"testNotification"_s));
        page.click(u"autoLoginSwitch"_s);
        QVERIFY(settings.isOn(Setting::autoLogin));

        page.click(u"5 min"_s);
        page.key(Qt::Key_Left);
        QCOMPARE(settings.number(Setting::pollIntervalMin), 30);
        QCOMPARE(world.page->focused(), u"30 min"_s);

        // What does not work says so and goes back.
        page.click(u"autostartSwitch"_s);
        QVERIFY(world.autostart.on);
        world.autostart.problem = u"Mappen kan ikke skrives."_s;
        page.click(u"autostartSwitch"_s);
        QVERIFY(page.find(u"autostartSwitch"_s)->property("checked").toBool());
        QVERIFY(page.isShown(u"Mappen kan ikke skrives."_s));

        page.click(u"copyDiagnosis"_s);
        QCOMPARE(world.desktop.clipboard, u"Tindra\nalt er bra"_s);
        page.verifyNoWarnings();
    }

    void whatIsWrongIsSaid() {
        SettingsPage world;
        world.engineWarning = u"Motoren er for gammel."_s;
        runOn(world.dir.path(), "CREATE TRIGGER full BEFORE INSERT ON kv "
                                "BEGIN SELECT RAISE(ABORT, 'full'); END");
        world.show();
        PageWindow& page = *world.page;
        QVERIFY(page.isShown(u"Motoren er for gammel."_s));
        QCOMPARE(world.state.storageProblem(), QString());
        // What could not be stored goes back, and the window learns why.
        page.click(u"autoLoginSwitch"_s);
        QVERIFY(!page.find(u"autoLoginSwitch"_s)->property("checked").toBool());
        page.click(u"30 min"_s);
        settle();
        QCOMPARE(world.state.pollIntervalMin(), 10);
        QCOMPARE(page.find(u"interval"_s)->property("currentIndex").toInt(), 1);
        QVERIFY(!world.state.storageProblem().isEmpty());
        page.verifyNoWarnings();
    }

    void everythingIsReachedWithTheKeyboard() {
        SettingsPage world;
        world.show();
        QString order;
        for (int i = 0; i < 13; ++i) {
            world.page->key(Qt::Key_Tab);
            order += world.page->focused().section(u' ', 0, 1) + u'|';
        }
        QCOMPARE(order, u"Åpne SAS|Sjekk innlogging|Logg inn|EuroBonus-nummer eller|Passord|"
                        u"Skrivebordsvarsler ved|Varsle når|Test varsel|Del treff|10 min|"
                        u"Start Tindra|Kopier diagnose|Åpne SAS|"_s);
        world.page->verifyNoWarnings();
    }
};

TINDRA_UI_TEST(TestSettingsWindow)
#include "test_settings_window.moc"
