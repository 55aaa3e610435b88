// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>

/// The part of a desktop that shows status icons, so that Tindra's window can be closed into it.
class StatusArea : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ version)
public:
    StatusArea()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                              QStringLiteral("status area"))) {
        m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                             QDBusConnection::ExportAllContents);
        m_bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }
    ~StatusArea() override { QDBusConnection::disconnectFromBus(QStringLiteral("status area")); }
    Q_DISABLE_COPY_MOVE(StatusArea)

    bool hasHost() const { return true; }
    int version() const { return 0; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString&) {}
    void RegisterStatusNotifierHost(const QString&) {}

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    QDBusConnection m_bus;
};
