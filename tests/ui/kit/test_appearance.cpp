// SPDX-License-Identifier: MIT
// The desktop's preferences, from a settings portal on a real bus.
#include "platform/linux/DesktopAppearance.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

using PortalSettings = QMap<QString, QVariantMap>;

namespace {

const QString appearance = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString kde = u"org.kde.kdeglobals.KDE"_s;

PortalSettings setting(const QString& group, const QString& key, const QVariant& value) {
    return {{group, {{key, value}}}};
}

/// A settings portal, in a thread of its own as a real one is in a process of its own.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    explicit Portal(PortalSettings settings) : m_settings(std::move(settings)) {
        moveToThread(&m_thread);
        m_thread.start();
        QMetaObject::invokeMethod(this, &Portal::start, Qt::BlockingQueuedConnection);
    }
    ~Portal() override {
        QDBusConnection::disconnectFromBus(u"portal"_s);
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY_MOVE(Portal)

    void change(const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        QVERIFY(QDBusConnection(u"portal"_s).send(signal));
    }

public Q_SLOTS:
    PortalSettings ReadAll(const QStringList& groups) {
        PortalSettings answer;
        for (const QString& group : groups)
            if (m_settings.contains(group))
                answer.insert(group, m_settings[group]);
        return answer;
    }

private:
    void start() {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
        bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                           QDBusConnection::ExportAllSlots);
        bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }

    PortalSettings m_settings;
    QThread m_thread;
};

} // namespace

class TestAppearance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { qDBusRegisterMetaType<PortalSettings>(); }
    void cleanup() { QGuiApplication::setPalette(QPalette()); }

    void thePortalIsReadAtTheStart_data() {
        QTest::addColumn<PortalSettings>("settings");
        QTest::addColumn<bool>("dark");
        QTest::addColumn<bool>("reduced");
        const QString scheme = u"color-scheme"_s;
        QTest::newRow("nothing") << PortalSettings() << false << false;
        QTest::newRow("no preference") << setting(appearance, scheme, 0U) << false << false;
        QTest::newRow("dark") << setting(appearance, scheme, 1U) << true << false;
        QTest::newRow("light") << setting(appearance, scheme, 2U) << false << false;
        QTest::newRow("GNOME still")
            << setting(gnome, u"enable-animations"_s, false) << false << true;
        QTest::newRow("GNOME moving")
            << setting(gnome, u"enable-animations"_s, true) << false << false;
        const QString factor = u"AnimationDurationFactor"_s;
        QTest::newRow("KDE still") << setting(kde, factor, u"0"_s) << false << true;
        QTest::newRow("KDE moving") << setting(kde, factor, u"0.5"_s) << false << false;
        QTest::newRow("nonsense") << setting(appearance, scheme, u"blue"_s) << false << false;
    }
    void thePortalIsReadAtTheStart() {
        QFETCH(PortalSettings, settings);
        const Portal portal(settings);
        const DesktopAppearance look(QDBusConnection::sessionBus());
        QTEST(look.isDark(), "dark");
        QTEST(look.reducesMotion(), "reduced");
    }

    void changesAreFollowed() {
        Portal portal(setting(appearance, u"color-scheme"_s, 2U));
        const DesktopAppearance look(QDBusConnection::sessionBus());
        const QSignalSpy changed(&look, &Appearance::changed);
        portal.change(appearance, u"color-scheme"_s, 1U);
        QTRY_VERIFY(look.isDark());
        portal.change(gnome, u"enable-animations"_s, false);
        QTRY_VERIFY(look.reducesMotion());
        QCOMPARE(changed.size(), 2);
        // What is none of our business is no change.
        portal.change(appearance, u"accent-color"_s, 1U);
        portal.change(appearance, u"color-scheme"_s, 2U);
        QTRY_VERIFY(!look.isDark());
        QCOMPARE(changed.size(), 3);
    }

    void aPortalMayComeLater() {
        const DesktopAppearance look(QDBusConnection::sessionBus());
        QVERIFY(!look.isDark());
        const Portal portal(setting(appearance, u"color-scheme"_s, 1U));
        QTRY_VERIFY(look.isDark());
    }

    void withoutAPortalThePaletteDecides() {
        const DesktopAppearance look(QDBusConnection(u"no such connection"_s));
        const QSignalSpy changed(&look, &Appearance::changed);
        QVERIFY(!look.isDark());
        QPalette dark;
        dark.setColor(QPalette::Window, 0x202020);
        dark.setColor(QPalette::WindowText, Qt::white);
        QGuiApplication::setPalette(dark);
        QTRY_VERIFY(look.isDark());
        QCOMPARE(changed.size(), 1);
    }
};

TINDRA_TEST_MAIN(TestAppearance) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const TestBus bus;
    const QGuiApplication application(argc, argv);
    TestAppearance test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_appearance.moc"
