// SPDX-License-Identifier: MIT
// Clock, folders, notifications and the one instance, each with the real thing on a bus of their
// own.
#include "platform/linux/DBusInstance.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/GraphicsHardware.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/UnixSignals.h"
#include "tests/support/NotificationService.h"
#include "tests/support/Settled.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestDesktop : public QObject {
    Q_OBJECT

public:
    explicit TestDesktop(TestBus& bus) : m_bus(bus) {}

private:
    TestBus& m_bus;
    LinuxClock m_clock;

private Q_SLOTS:
    void theClockWaitsAndCancels() {
        QStringList order;
        auto late = m_clock.after(20ms, [&order] { order.append(u"late"_s); });
        auto early = m_clock.after(1ms, [&order] { order.append(u"early"_s); });
        auto cancelled = m_clock.after(5ms, [&order] { order.append(u"cancelled"_s); });
        cancelled.reset();
        // A call may destroy its own timer.
        std::unique_ptr<Clock::Timer> own;
        own = m_clock.after(2ms, [&] {
            own.reset();
            order.append(u"own"_s);
        });
        const Ticks start = m_clock.ticks();
        QTRY_COMPARE(order, QStringList({u"early"_s, u"own"_s, u"late"_s}));
        QVERIFY(m_clock.ticks() - start >= 15ms);
        QVERIFY(m_clock.today() == QDate::currentDate());

        InterruptibleSleep sleep(m_clock);
        const auto cut = sleep.start(1h);
        sleep.interrupt();
        QVERIFY(cut.isResolved());
    }

    void foldersFollowTheEnvironment() {
        const LinuxFolders folders(u"Tindra"_s);
        QCOMPARE(folders.data(), m_bus.home() + u"/data/Tindra"_s);
        QCOMPARE(folders.cache(), m_bus.home() + u"/cache/Tindra"_s);
    }

    void graphicsHardwareHasADevice() {
        const QTemporaryDir devices;
        QDir(devices.path()).mkpath(u"dri/by-path"_s);
        QVERIFY(!hasGraphicsHardware(devices.path()));
        for (const QString& name : {u"/dri/renderD128"_s, u"/nvidiactl"_s, u"/dxg"_s}) {
            QFile device(devices.path() + name);
            QVERIFY(device.open(QIODevice::WriteOnly));
            QVERIFY2(hasGraphicsHardware(devices.path()), qPrintable(name));
            QVERIFY(device.remove());
        }
    }

    void signalsArriveInTheLoop() {
        int calls = 0;
        {
            const UnixSignals watch({SIGUSR1}, [&calls] { ++calls; });
            ::raise(SIGUSR1);
            QCOMPARE(calls, 0);
            QTRY_COMPARE(calls, 1);
        }
        const UnixSignals again({SIGUSR1}, [&calls] { calls += 10; });
        ::raise(SIGUSR1);
        QTRY_COMPARE(calls, 11);
    }

    void notificationsWithoutAServiceAreMissedOnce() {
        DBusNotifications center(QDBusConnection::sessionBus());
        const QSignalSpy missing(&center, &NotificationCenter::unavailable);
        const QSignalSpy settled(&center, &NotificationCenter::settled);
        center.requestAuthorization();
        center.post({u"a"_s, u"b"_s});
        center.post({u"c"_s, u"d"_s});
        QTRY_COMPARE(settled.size(), 1);
        QCOMPARE(center.pending(), 0);
        QCOMPARE(missing.size(), 1);
        QVERIFY(missing[0][0].toString().contains(u"varslingstjeneste"_s));

        // One that is started later is used, and still nothing is said twice.
        NotificationService service({u"body"_s});
        center.post({u"e"_s, u"f"_s});
        QTRY_COMPARE(service.received.size(), 1);
        QCOMPARE(missing.size(), 1);

        DBusNotifications noBus(QDBusConnection(u"no such connection"_s));
        const QSignalSpy noBusMissing(&noBus, &NotificationCenter::unavailable);
        noBus.post({u"a"_s, u"b"_s});
        QTRY_COMPARE(noBusMissing.size(), 1);
        QVERIFY(noBusMissing[0][0].toString().contains(u"D-Bus-økt"_s));
    }

    void bodiesAreEscapedWhereTheyAreMarkup_data() {
        QTest::addColumn<QStringList>("capabilities");
        QTest::addColumn<QString>("body");
        QTest::newRow("markup") << QStringList{u"body"_s, u"body-markup"_s}
                                << u"Oslo &lt;b&gt; &amp; &quot;Ålesund&quot;\n2 seter"_s;
        QTest::newRow("plain") << QStringList{u"body"_s} << u"Oslo <b> & \"Ålesund\"\n2 seter"_s;
    }
    void bodiesAreEscapedWhereTheyAreMarkup() {
        QFETCH(QStringList, capabilities);
        NotificationService service(capabilities);
        DBusNotifications center(QDBusConnection::sessionBus());
        center.post({u"✈️ <Tittel> & mer"_s, u"Oslo <b> & \"Ålesund\"\n2 seter"_s});
        center.post({u"to"_s, u"2"_s});
        QCOMPARE(center.pending(), 2);
        QTRY_COMPARE(service.received.size(), 2);
        // Titles are plain text with every service.
        QCOMPARE(service.received[0].summary, u"✈️ <Tittel> & mer"_s);
        QTEST(service.received[0].body, "body");
        QCOMPARE(service.received[0].app, u"Tindra"_s);
        QVERIFY(service.received[0].hints.contains(u"sound-name"_s));
        QCOMPARE(service.received[1].summary, u"to"_s);
        QTRY_COMPARE(center.pending(), 0);
    }

    void anotherServiceIsAskedAfresh() {
        DBusNotifications center(QDBusConnection::sessionBus());
        const QSignalSpy missing(&center, &NotificationCenter::unavailable);
        {
            NotificationService plain({u"body"_s});
            center.post({u"a"_s, u"1 < 2"_s});
            QTRY_COMPARE(plain.received.size(), 1);
            QCOMPARE(plain.received[0].body, u"1 < 2"_s);
            QVERIFY(center.isAvailable());
        }
        QTRY_VERIFY(!center.isAvailable());
        const QStringList markup{u"body"_s, u"body-markup"_s};
        {
            const NotificationService second(markup);
            // Without being asked to show anything.
            QTRY_VERIFY(center.isAvailable());
        }
        QTRY_VERIFY(!center.isAvailable());
        auto gone = std::make_unique<NotificationService>(QStringList{u"body"_s});
        center.post({u"b"_s, u"1 < 2"_s});
        gone.reset();
        // What waits for the answer of one that has gone is for its successor.
        NotificationService third(markup);
        QTRY_COMPARE(third.received.size(), 1);
        QCOMPARE(third.received[0].body, u"1 &lt; 2"_s);
        QCOMPARE(missing.size(), 0);
    }

    void whatIsChosenComesBackWithItsSubject() {
        NotificationService service({u"body"_s, u"actions"_s});
        DBusNotifications center(QDBusConnection::sessionBus());
        center.post({u"ingen hører"_s, u"Oslo"_s, u"key#business"_s, u"Book på SAS"_s});
        QTRY_COMPARE(service.received.size(), 1);
        QCOMPARE(service.received.takeFirst().actions, QStringList());
        const QSignalSpy opened(&center, &NotificationCenter::opened);
        const QSignalSpy chosen(&center, &NotificationCenter::actionChosen);
        center.post({u"funn"_s, u"Oslo"_s, u"key#business"_s, u"Book på SAS"_s});
        center.post({u"om noe annet"_s, u""_s});
        QTRY_COMPARE(service.received.size(), 2);
        QTRY_COMPARE(center.pending(), 0);
        const QStringList actions{u"default"_s, u"Vis i Tindra"_s, u"own"_s, u"Book på SAS"_s};
        QCOMPARE(service.received[0].actions, actions);
        QCOMPARE(service.received[1].actions, QStringList());
        // Anybody on the bus can say so, but only the service is believed.
        const QString stranger = u"stranger"_s;
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, stranger)
            .send(QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                             u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s)
                  << 1U << u"own"_s);
        QDBusConnection::disconnectFromBus(stranger);
        Q_EMIT service.ActionInvoked(2, u"default"_s);
        Q_EMIT service.ActionInvoked(17, u"default"_s);
        Q_EMIT service.ActivationToken(2, u"for another"_s);
        Q_EMIT service.ActivationToken(1, u"token"_s);
        Q_EMIT service.ActionInvoked(1, u"default"_s);
        Q_EMIT service.ActionInvoked(1, u"own"_s);
        Q_EMIT service.NotificationClosed(1, 2);
        QTRY_COMPARE(chosen.size(), 1);
        QCOMPARE(opened, (QList<QVariantList>{{u"key#business"_s}}));
        QCOMPARE(chosen[0][0].toString(), u"key#business"_s);
        QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
        qunsetenv("XDG_ACTIVATION_TOKEN");
        // Other programs' notifications may get the number later.
        Q_EMIT service.ActionInvoked(1, u"default"_s);
        Q_EMIT service.ActionInvoked(99, u"default"_s);
        QTest::qWait(50);
        QCOMPARE(opened.size(), 1);
    }

    void aSecondStartHandsOnItsCommandAndItsToken() {
        const QTemporaryDir folder;
        DBusInstance first(folder.path(), QDBusConnection::sessionBus());
        QVERIFY(first.isFirst());
        QByteArray token;
        first.serve([&token](const QStringList& arguments) -> QCoro::Task<CommandAnswer> {
            token = qgetenv("XDG_ACTIVATION_TOKEN");
            co_return CommandAnswer{7, arguments.join(u' ').toUtf8(), u"å"_s};
        });
        const QString connection = u"second"_s;
        {
            DBusInstance second(folder.path(), QDBusConnection::connectToBus(
                                                   QDBusConnection::SessionBus, connection));
            QVERIFY(!second.isFirst());
            qputenv("XDG_ACTIVATION_TOKEN", "of the launcher");
            auto passed = second.pass({u"hunt"_s, u"--once"_s});
            // Both live in one process here, and share what the token is handed on by.
            qunsetenv("XDG_ACTIVATION_TOKEN");
            QCOMPARE(**awaited(std::move(passed)), (CommandAnswer{7, "hunt --once", u"å"_s}));
        }
        QDBusConnection::disconnectFromBus(connection);
        QCOMPARE(token, "of the launcher");
        qunsetenv("XDG_ACTIVATION_TOKEN");
    }
};

TINDRA_TEST_MAIN(TestDesktop) {
    TestBus bus;
    const QCoreApplication application(argc, argv);
    TestDesktop test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "test_desktop.moc"
