// SPDX-License-Identifier: MIT
#pragma once

#include "platform/NotificationCenter.h"

#include <QDBusConnection>
#include <QHash>
#include <QList>
#include <QStringList>

#include <memory>
#include <optional>

class QDBusPendingCallWatcher;

/// Notifications through `org.freedesktop.Notifications`.
class DBusNotifications final : public NotificationCenter {
    Q_OBJECT
public:
    explicit DBusNotifications(QDBusConnection bus, QObject* parent = nullptr);
    ~DBusNotifications() override;

    /// Desktops have no such question; this asks the service what it can do, so that the first
    /// notification does not have to.
    void requestAuthorization() override;
    bool isAvailable() const override { return m_abilities.has_value(); }
    void post(const Notification& notification, Answer answer = {}) override;

    int pending() const override { return static_cast<int>(m_waiting.size()) + m_sent; }

private Q_SLOTS:
    void tokenGiven(uint id, const QString& token);
    void chosen(uint id, const QString& action);
    void closed(uint id, uint reason);

private:
    /// A notification that the service has not got yet.
    struct Waiting {
        Notification notification;
        Answer answer;
    };
    /// A notification that is on the screen.
    struct Shown {
        QString subject;
        /// With it Wayland lets a window come to the front.
        QByteArray activationToken{};
    };

    void startAfresh(const QString& newService);
    void askCapabilities();
    void takeCapabilities();
    void send(const Notification& notification, const Answer& answer);
    void dropWaiting();
    void fail(const QString& reason);

    QDBusConnection m_bus;
    /// What the service can do; absent until it has answered.
    std::optional<QStringList> m_abilities;
    /// The question that counts; answers to earlier ones come from a service that is gone.
    std::unique_ptr<QDBusPendingCallWatcher> m_question;
    /// Which of the services that have come and gone this is.
    int m_service = 0;
    bool m_reported = false;
    QList<Waiting> m_waiting;
    /// By the service's number, those that lead somewhere.
    QHash<uint, Shown> m_shown;
    int m_sent = 0;
};
