// SPDX-License-Identifier: MIT
#pragma once

#include "platform/NotificationCenter.h"

#include <QDBusConnection>
#include <QList>

#include <optional>
#include <utility>

/// Notifications through `org.freedesktop.Notifications`.
class DBusNotifications final : public NotificationCenter {
    Q_OBJECT
public:
    explicit DBusNotifications(QDBusConnection bus, QObject* parent = nullptr);

    /// Desktops have no such question; this asks the service what it can do, so that the first
    /// notification does not have to.
    void requestAuthorization() override;
    void post(const QString& title, const QString& body) override;

    /// Notifications that the service has not answered yet.
    int pending() const { return static_cast<int>(m_waiting.size()) + m_sent; }

Q_SIGNALS:
    /// `pending()` has become 0.
    void settled();

private:
    void askCapabilities();
    void send(const QString& title, const QString& body);
    void fail(const QString& reason);

    QDBusConnection m_bus;
    /// Absent until the service has answered.
    std::optional<bool> m_bodyMarkup;
    bool m_asking = false;
    bool m_reported = false;
    QList<std::pair<QString, QString>> m_waiting;
    int m_sent = 0;
};
