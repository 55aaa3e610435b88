// SPDX-License-Identifier: MIT
#include "platform/linux/DBusNotifications.h"

#include "platform/Bundle.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

constexpr int answerTimeoutMs = 5000;

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s,
                                          u"/org/freedesktop/Notifications"_s,
                                          u"org.freedesktop.Notifications"_s, method);
}

} // namespace

DBusNotifications::DBusNotifications(QDBusConnection bus, QObject* parent)
    : NotificationCenter(parent), m_bus(std::move(bus)) {}

void DBusNotifications::requestAuthorization() {
    askCapabilities();
}

void DBusNotifications::post(const QString& title, const QString& body) {
    if (m_bodyMarkup) {
        send(title, body);
        return;
    }
    m_waiting.append({title, body});
    askCapabilities();
}

void DBusNotifications::askCapabilities() {
    if (m_asking || m_bodyMarkup)
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
            m_bodyMarkup = reply.value().contains(u"body-markup"_s);
            for (const auto& [title, body] : waiting)
                send(title, body);
        }
        if (pending() == 0)
            Q_EMIT settled();
    });
}

void DBusNotifications::send(const QString& title, const QString& body) {
    // Services with body markup read "&", "<" and ">" as markup; the others show them as they are.
    QDBusMessage message = call(u"Notify"_s);
    message << u"Tindra"_s << quint32(0) << QStringLiteral(TINDRA_BUNDLE_ID) << title
            << (*m_bodyMarkup ? body.toHtmlEscaped() : body) << QStringList()
            << QVariantMap{{u"sound-name"_s, u"message-new-instant"_s},
                           {u"desktop-entry"_s, QStringLiteral(TINDRA_BUNDLE_ID)}}
            << -1;
    ++m_sent;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, answerTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        --m_sent;
        if (watcher->isError()) {
            // The service may have been replaced by one with other abilities.
            m_bodyMarkup.reset();
            fail(watcher->error().message());
        }
        if (pending() == 0)
            Q_EMIT settled();
    });
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
