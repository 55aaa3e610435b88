// SPDX-License-Identifier: MIT
// The rules of the settings screen.
#include "tests/ui/settings/SettingsWorld.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/settings/CheckInterval.h"

using namespace Qt::StringLiterals;

class TestSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void intervals_data() {
        QTest::addColumn<double>("stored");
        QTest::addColumn<QString>("choices");
        QTest::addColumn<int>("index");
        const QString usual = u"5 min,10 min,30 min"_s;
        QTest::newRow("usual") << 30.0 << usual << 2;
        QTest::newRow("unusual") << 15.0 << u"5 min,10 min,15 min,30 min"_s << 2;
        QTest::newRow("decimal") << 2.5 << u"2,5 min,5 min,10 min,30 min"_s << 0;
    }
    void intervals() {
        QFETCH(double, stored);
        SettingsWorld world;
        Settings& settings = world.database.settings();
        settings.set(Setting::pollIntervalMin, stored);
        SettingsView& view = world.view;
        view.open();
        settle();
        QTEST(view.intervalLabels().join(u','), "choices");
        QTEST(view.intervalIndex(), "index");
        // Looking changes nothing, and what was there can be had again.
        QCOMPARE(settings.number(Setting::pollIntervalMin), stored);
        const auto labels = view.intervalLabels();
        view.pickInterval(int(labels.indexOf(u"30 min"_s)));
        QCOMPARE(settings.number(Setting::pollIntervalMin), 30);
        QCOMPARE(world.state.pollIntervalMin(), 30);
        QCOMPARE(view.intervalLabels(), labels);
        view.pickInterval(0);
        QCOMPARE(settings.number(Setting::pollIntervalMin), world.state.pollIntervalMin());
        view.pickInterval(7);
        QCOMPARE(view.intervalIndex(), 0);
    }

    void detailsAreEditedAndStored() {
        SettingsWorld world;
        SignInDetails& details = world.details;
        details.open();
        settle();
        QVERIFY(details.ebUser().isEmpty() && details.ebPassword().isEmpty());
        details.setEbPassword(u"hemmelig"_s);
        QVERIFY(!details.canSave());
        details.setEbUser(u"  "_s);
        QVERIFY(!details.canSave());
        details.setEbUser(u" 601234567 "_s);
        details.save();
        QVERIFY2(!details.canSave(), "one save at a time");
        settle();
        QCOMPARE(world.inKeychain(), (Credentials{u"601234567"_s, u"hemmelig"_s}));
        QVERIFY(details.isStored() && !details.credsEdited());
        QCOMPARE(details.ebUser(), u"601234567"_s);
        QCOMPARE(details.ebPassword(), SignInDetails::passwordMask());

        // A new name keeps the stored password.
        details.setEbUser(u"kari@example.no"_s);
        QVERIFY(!details.isStored());
        details.save();
        settle();
        QCOMPARE(world.inKeychain(), (Credentials{u"kari@example.no"_s, u"hemmelig"_s}));
    }

    void typingIntoTheMaskReplacesIt_data() {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("password");
        const QString mask = SignInDetails::passwordMask();
        QTest::newRow("appended") << mask + u'x' << u"x"_s;
        QTest::newRow("in the middle") << mask.first(3) + u'x' + mask.sliced(3) << u"x"_s;
        QTest::newRow("one bullet deleted") << mask.chopped(1) << QString();
        QTest::newRow("all replaced") << u"ny"_s << u"ny"_s;
    }
    void typingIntoTheMaskReplacesIt() {
        QFETCH(QString, field);
        SettingsWorld world;
        world.storeDetails(u"kari"_s, u"gammel"_s);
        world.details.open();
        settle();
        world.details.setEbPassword(field);
        QTEST(world.details.ebPassword(), "password");
    }

    void nothingTypedIsLostOrKept() {
        SettingsWorld world;
        SignInDetails& details = world.details;
        world.storeDetails(u"kari"_s, u"gammel"_s);
        // Typed before the keychain has answered.
        details.open();
        details.setEbUser(u"ola"_s);
        settle();
        QCOMPARE(details.ebUser(), u"ola"_s);
        // Left without storing.
        details.close();
        QVERIFY(details.ebUser().isEmpty());
        details.open();
        settle();
        QCOMPARE(details.ebUser(), u"kari"_s);
        QVERIFY(details.isStored());
        // Left and come back while it is being stored.
        details.setEbUser(u"ola"_s);
        details.save();
        details.close();
        details.open();
        settle();
        QCOMPARE(world.inKeychain(), (Credentials{u"ola"_s, u"gammel"_s}));
        QCOMPARE(details.ebUser(), u"ola"_s);
        QVERIFY(details.isStored());
    }

    void typingGoesOnWhileDetailsAreStored() {
        SettingsWorld world;
        SignInDetails& details = world.details;
        details.open();
        settle();
        details.setEbUser(u"kari"_s);
        details.setEbPassword(u"hemmelig"_s);
        details.save();
        details.setEbUser(u"kari@example.no"_s);
        settle();
        QCOMPARE(world.inKeychain(), (Credentials{u"kari"_s, u"hemmelig"_s}));
        QCOMPARE(details.ebUser(), u"kari@example.no"_s);
        QVERIFY(details.canSave() && !details.isStored());
    }

    void aKeychainThatRefuses() {
        SettingsWorld world;
        SignInDetails& details = world.details;
        Q_EMIT world.secrets.unavailable(u"Nøkkelringen svarer ikke."_s);
        details.open();
        settle();
        QCOMPARE(details.problem(), u"Nøkkelringen svarer ikke."_s);
        // That an empty one works again, only the keychain itself can tell.
        Q_EMIT world.secrets.available();
        QCOMPARE(details.problem(), QString());
        world.secrets.refuses = true;
        details.setEbUser(u"kari"_s);
        details.setEbPassword(u"hemmelig"_s);
        details.save();
        settle();
        QVERIFY(!details.isStored());
        QVERIFY2(details.canSave(), "it can be tried again");
        QVERIFY(!details.problem().isEmpty());
        Q_EMIT world.secrets.unavailable(u"Nøkkelringen er låst."_s);
        QCOMPARE(details.problem(), u"Nøkkelringen er låst."_s);
        world.secrets.refuses = false;
        details.save();
        settle();
        Q_EMIT world.secrets.available();
        QVERIFY(details.isStored());
        QVERIFY(details.problem().isEmpty());

        // Somebody else has emptied it since.
        world.keychain.clear();
        details.setEbUser(u"ola"_s);
        details.save();
        settle();
        QCOMPARE(world.inKeychain(), std::nullopt);
        QVERIFY(details.ebPassword().isEmpty() && !details.problem().isEmpty());
    }
};

TINDRA_UI_TEST(TestSettings)
#include "test_settings.moc"
