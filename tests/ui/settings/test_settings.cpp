// SPDX-License-Identifier: MIT
// The rules of the settings screen.
#include "tests/ui/settings/SettingsWorld.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/settings/CheckInterval.h"

using namespace Qt::StringLiterals;

class TestSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void switchesStoreAtOnce_data() {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("whenMissing");
        QTest::newRow("sign in") << u"autoLoginOn"_s << u"auto_login"_s << false;
        QTest::newRow("notify") << u"notifyOn"_s << u"native_notify"_s << true;
        QTest::newRow("sold out") << u"notifySoldOut"_s << u"notify_soldout"_s << true;
        QTest::newRow("share") << u"shareHits"_s << u"share_hits"_s << true;
    }
    void switchesStoreAtOnce() {
        QFETCH(QString, property);
        QFETCH(QString, key);
        SettingsWorld world;
        const QByteArray name = property.toLatin1();
        QTEST(world.view.property(name.constData()).toBool(), "whenMissing");
        // The last choice is off, which sends nothing to other hunters.
        for (const bool on : {true, false}) {
            if (on && key == u"share_hits")
                continue;
            world.view.setProperty(name.constData(), on);
            QCOMPARE(world.database.get(key), on ? u"1"_s : u"0"_s);
            QCOMPARE(world.view.property(name.constData()).toBool(), on);
        }
        // Anything but "1" is off.
        world.database.set(key, u"true"_s);
        const AppState later(world.database, world.worker, world.finds, world.clock);
        QVERIFY(key == u"native_notify" ? !later.notifyOn()
                                        : !world.view.property(name.constData()).toBool());
    }

    void intervals_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("choices");
        QTest::addColumn<int>("index");
        const QString usual = u"5 min,10 min,30 min"_s;
        QTest::newRow("missing") << QString() << usual << 1;
        QTest::newRow("usual") << u"30"_s << usual << 2;
        QTest::newRow("unusual") << u"15.0"_s << u"5 min,10 min,15 min,30 min"_s << 2;
        QTest::newRow("decimal") << u"2.5"_s << u"2,5 min,5 min,10 min,30 min"_s << 0;
        QTest::newRow("negative") << u"-5"_s << u"1 min,5 min,10 min,30 min"_s << 0;
        QTest::newRow("nonsense") << u"ofte"_s << usual << 1;
    }
    void intervals() {
        QFETCH(QString, stored);
        SettingsWorld world;
        if (!stored.isEmpty())
            world.database.set(u"poll_interval_min"_s, stored);
        AppState state(world.database, world.worker, world.finds, world.clock);
        SettingsView view(state, world.database, world.airline, world.notifier, &world.autostart,
                          world.pill, world.details, world.about);
        view.open();
        settle();
        QTEST(view.intervalLabels().join(u','), "choices");
        QTEST(view.intervalIndex(), "index");
        // Looking changes nothing, and what was there can be had again.
        QCOMPARE(world.database.get(u"poll_interval_min"_s).value_or(QString()), stored);
        const auto labels = view.intervalLabels();
        view.pickInterval(int(labels.indexOf(u"30 min"_s)));
        QCOMPARE(world.database.get(u"poll_interval_min"_s), u"30.0"_s);
        QCOMPARE(state.pollIntervalMin(), 30);
        QCOMPARE(view.intervalLabels(), labels);
        view.pickInterval(0);
        QCOMPARE(world.database.get(u"poll_interval_min"_s)->toDouble(), state.pollIntervalMin());
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
