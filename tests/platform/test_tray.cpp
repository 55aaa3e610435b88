// SPDX-License-Identifier: MIT
// The icon in the status area, with the watcher of status notifiers that desktops have, and
// in X11's own tray.
#include "platform/linux/QtTray.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QWindow>

#include <atomic>
#include <cstdlib>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

/// On a thread of its own, because Qt waits for it.
class StatusNotifierWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostThere)
public:
    StatusNotifierWatcher()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"watcher"_s)) {
        m_bus.registerObject(u"/StatusNotifierWatcher"_s, this,
                             QDBusConnection::ExportAllSlots |
                                 QDBusConnection::ExportAllProperties);
        m_bus.registerService(u"org.kde.StatusNotifierWatcher"_s);
        moveToThread(&m_thread);
        m_thread.start();
    }
    ~StatusNotifierWatcher() override {
        m_thread.quit();
        m_thread.wait();
        QDBusConnection::disconnectFromBus(u"watcher"_s);
    }
    Q_DISABLE_COPY_MOVE(StatusNotifierWatcher)

    bool isHostThere() const { return m_isHostThere; }
    void setHostThere(bool isThere) {
        m_isHostThere = isThere;
        m_bus.send(QDBusMessage::createSignal(
            u"/StatusNotifierWatcher"_s, u"org.kde.StatusNotifierWatcher"_s,
            isThere ? u"StatusNotifierHostRegistered"_s : u"StatusNotifierHostUnregistered"_s));
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& item) { Q_EMIT itemRegistered(item); }

Q_SIGNALS:
    void itemRegistered(const QString& item);

private:
    QDBusConnection m_bus;
    QThread m_thread;
    std::atomic_bool m_isHostThere = false;
};

class TestTray : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theIconFollowsAHostThatComesLate() {
        QPixmap mark(16, 16);
        mark.fill(Qt::red);
        QtTray tray(QIcon(mark), QDBusConnection::sessionBus());
        const QSignalSpy changed(&tray, &Tray::availabilityChanged);
        tray.show();
        tray.setStatus(u"Jakten er i gang"_s);
        QTest::qWait(50);
        QVERIFY(!tray.isAvailable());
        {
            StatusNotifierWatcher watcher;
            QStringList items;
            connect(&watcher, &StatusNotifierWatcher::itemRegistered, this,
                    [&items](const QString& item) { items.append(item); });
            QTest::qWait(50);
            QVERIFY(!tray.isAvailable());
            watcher.setHostThere(true);
            QTRY_COMPARE(items.size(), 1);
            QVERIFY(tray.isAvailable());
            QCOMPARE(changed.size(), 1);

            const QSignalSpy activated(&tray, &Tray::activated);
            QDBusConnection::sessionBus().send(
                QDBusMessage::createMethodCall(items[0], u"/StatusNotifierItem"_s,
                                               u"org.kde.StatusNotifierItem"_s, u"Activate"_s)
                << 0 << 0);
            QTRY_COMPARE(activated.size(), 1);
            watcher.setHostThere(false);
            QTRY_VERIFY(!tray.isAvailable());
            watcher.setHostThere(true);
            QTRY_COMPARE(items.size(), 2);
        }
        QTRY_VERIFY(!tray.isAvailable());
        QCOMPARE(changed.size(), 4);
        // Another shell.
        StatusNotifierWatcher second;
        second.setHostThere(true);
        QTRY_VERIFY(tray.isAvailable());
    }

    void withoutABusTheX11TrayCounts() {
        const QDBusConnection noBus(u"no such connection"_s);
        QVERIFY(!QtTray(QIcon(), noBus).isAvailable());
        xcb_connection_t* display =
            qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        const std::string_view name = "_NET_SYSTEM_TRAY_S0";
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> selection(
            xcb_intern_atom_reply(display, xcb_intern_atom(display, 0, name.size(), name.data()),
                                  nullptr),
            &std::free);
        QWindow owner;
        xcb_set_selection_owner(display, static_cast<xcb_window_t>(owner.winId()), selection->atom,
                                XCB_CURRENT_TIME);
        QVERIFY(QtTray(QIcon(), noBus).isAvailable());
    }
};

TINDRA_TEST_MAIN(TestTray) {
    TestBus bus;
    const QApplication application(argc, argv);
    TestTray test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_tray.moc"
