// SPDX-License-Identifier: MIT
#include "platform/linux/DBusNotifications.h"

#include "platform/Bundle.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

constexpr int answerTimeoutMs = 5000;
/// The service's name is its interface's.
const QString interfaceName = u"org.freedesktop.Notifications"_s;
const QString objectPath = u"/org/freedesktop/Notifications"_s;
/// What services call a click on the notification itself.
const QString defaultAction = u"default"_s;
const QString ownAction = u"own"_s;

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(interfaceName, objectPath, interfaceName, method);
}

} // namespace

DBusNotifications::DBusNotifications(QDBusConnection bus, QObject* parent)
    : NotificationCenter(parent), m_bus(std::move(bus)) {
    m_bus.connect({}, objectPath, interfaceName, u"ActionInvoked"_s, this,
                  SLOT(chosen(uint, QString)));
    m_bus.connect({}, objectPath, interfaceName, u"NotificationClosed"_s, this,
                  SLOT(closed(uint, uint)));
    // A new service counts its notifications afresh.
    auto* owner = new QDBusServiceWatcher(interfaceName, m_bus,
                                          QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { m_subjects.clear(); });
}

void DBusNotifications::requestAuthorization() {
    askCapabilities();
}

void DBusNotifications::post(const Notification& notification) {
    if (m_abilities) {
        send(notification);
        return;
    }
    m_waiting.append(notification);
    askCapabilities();
}

void DBusNotifications::askCapabilities() {
    if (m_asking || m_abilities)
        return;
    if (!m_bus.isConnected()) {
        // A call on such a connection never gets an answer, not even an error.
        m_waiting.clear();
        fail({});
        return;
    }
    m_asking = true;
    auto* watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(call(u"GetCapabilities"_s), answerTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        m_asking = false;
        const QDBusPendingReply<QStringList> reply = *watcher;
        const auto waiting = std::exchange(m_waiting, {});
        if (reply.isError()) {
            fail(reply.error().message());
        } else {
            m_abilities = reply.value();
            for (const Notification& notification : waiting)
                send(notification);
        }
        if (pending() == 0)
            Q_EMIT settled();
    });
}

void DBusNotifications::send(const Notification& notification) {
    // Services with body markup read "&", "<" and ">" as markup; the others show them as they are.
    const bool hasMarkup = m_abilities->contains(u"body-markup"_s);
    QStringList actions;
    if (m_abilities->contains(u"actions"_s) && !notification.subject.isEmpty()) {
        actions = {defaultAction, u"Vis i Tindra"_s};
        if (!notification.action.isEmpty())
            actions += {ownAction, notification.action};
    }
    QDBusMessage message = call(u"Notify"_s);
    message << u"Tindra"_s << quint32(0) << QStringLiteral(TINDRA_BUNDLE_ID) << notification.title
            << (hasMarkup ? notification.body.toHtmlEscaped() : notification.body) << actions
            << QVariantMap{{u"sound-name"_s, u"message-new-instant"_s},
                           {u"desktop-entry"_s, QStringLiteral(TINDRA_BUNDLE_ID)}}
            << -1;
    ++m_sent;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, answerTimeoutMs), this);
    const QString subject = actions.isEmpty() ? QString() : notification.subject;
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, subject] {
        watcher->deleteLater();
        --m_sent;
        if (watcher->isError()) {
            // The service may have been replaced by one with other abilities.
            m_abilities.reset();
            fail(watcher->error().message());
        } else if (!subject.isEmpty()) {
            m_subjects.insert(QDBusPendingReply<uint>(*watcher).value(), subject);
        }
        if (pending() == 0)
            Q_EMIT settled();
    });
}

void DBusNotifications::chosen(uint id, const QString& action) {
    const QString subject = m_subjects.value(id);
    if (subject.isEmpty())
        return;
    if (action == defaultAction)
        Q_EMIT opened(subject);
    else if (action == ownAction)
        Q_EMIT actionChosen(subject);
}

/// Some services send the choice after this, but in the same breath.
void DBusNotifications::closed(uint id, uint) {
    QMetaObject::invokeMethod(this, [this, id] { m_subjects.remove(id); }, Qt::QueuedConnection);
}

void DBusNotifications::fail(const QString& reason) {
    if (std::exchange(m_reported, true))
        return;
    Q_EMIT unavailable(
        m_bus.isConnected()
            ? QStringLiteral("Varsler kan ikke vises: ingen varslingstjeneste svarer på D-Bus "
                             "(%1). Start en, for eksempel dunst eller skrivebordets egen.")
                  .arg(reason)
            : QStringLiteral("Varsler kan ikke vises: ingen D-Bus-økt. Start Tindra fra "
                             "skrivebordet, eller med dbus-run-session."));
}
