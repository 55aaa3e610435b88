// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// A notification service as desktops have one.
class NotificationService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    explicit NotificationService(const QStringList& capabilities)
        : m_bus(
              QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("service")))
        , m_capabilities(capabilities) {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                             QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        m_bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
    }
    ~NotificationService() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("service"));
    }
    Q_DISABLE_COPY_MOVE(NotificationService)

    struct Notification {
        QString app;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };
    QList<Notification> received;

public Q_SLOTS:
    QStringList GetCapabilities() { return m_capabilities; }
    uint Notify(const QString& app, uint, const QString&, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int) {
        received.append({app, summary, body, actions, hints});
        return static_cast<uint>(received.size());
    }

Q_SIGNALS:
    void ActivationToken(uint id, const QString& token);
    void ActionInvoked(uint id, const QString& action);
    void NotificationClosed(uint id, uint reason);

private:
    QDBusConnection m_bus;
    QStringList m_capabilities;
};
