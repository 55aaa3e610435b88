// SPDX-License-Identifier: MIT
#include "platform/linux/DBusNotifications.h"

#include "platform/Bundle.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QMetaMethod>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

constexpr int notificationsTimeoutMs = 5000;
/// The service's name is its interface's.
const QString notificationsName = u"org.freedesktop.Notifications"_s;
const QString notificationsPath = u"/org/freedesktop/Notifications"_s;
/// What services call a click on the notification itself.
const QString defaultAction = u"default"_s;
const QString ownAction = u"own"_s;

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(notificationsName, notificationsPath, notificationsName,
                                          method);
}

} // namespace

DBusNotifications::DBusNotifications(QDBusConnection bus, QObject* parent)
    : NotificationCenter(parent), m_bus(std::move(bus)) {
    // Of the service alone: anybody may send such signals.
    const auto listen = [this](const QString& signal, const char* slot) {
        m_bus.connect(notificationsName, notificationsPath, notificationsName, signal, this, slot);
    };
    listen(u"ActivationToken"_s, SLOT(tokenGiven(uint, QString)));
    listen(u"ActionInvoked"_s, SLOT(chosen(uint, QString)));
    listen(u"NotificationClosed"_s, SLOT(closed(uint, uint)));
    auto* owner = new QDBusServiceWatcher(notificationsName, m_bus,
                                          QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& now) { startAfresh(now); });
}

DBusNotifications::~DBusNotifications() = default;

void DBusNotifications::requestAuthorization() {
    askCapabilities();
}

void DBusNotifications::post(const Notification& notification, Answer answer) {
    if (m_abilities) {
        send(notification, answer);
        return;
    }
    m_waiting.append({notification, std::move(answer)});
    askCapabilities();
}

void DBusNotifications::dropWaiting() {
    const auto dropped = std::exchange(m_waiting, {});
    for (const Waiting& one : dropped) {
        if (one.answer)
            QMetaObject::invokeMethod(
                this, [answer = one.answer] { answer(false); }, Qt::QueuedConnection);
    }
}

/// Another service has abilities of its own, and counts its notifications afresh. One that has gone
/// is not called back before there is something to show.
void DBusNotifications::startAfresh(const QString& newService) {
    ++m_service;
    m_shown.clear();
    m_abilities.reset();
    m_question.reset();
    if (!newService.isEmpty() || !m_waiting.isEmpty())
        askCapabilities();
}

void DBusNotifications::askCapabilities() {
    if (m_question || m_abilities)
        return;
    if (!m_bus.isConnected()) {
        // A call on such a connection never gets an answer, not even an error.
        dropWaiting();
        fail({});
        return;
    }
    m_question = std::make_unique<QDBusPendingCallWatcher>(
        m_bus.asyncCall(call(u"GetCapabilities"_s), notificationsTimeoutMs));
    connect(m_question.get(), &QDBusPendingCallWatcher::finished, this,
            &DBusNotifications::takeCapabilities);
}

void DBusNotifications::takeCapabilities() {
    const QDBusPendingReply<QStringList> reply = *m_question;
    // It is the sender of the signal that has led here.
    m_question.release()->deleteLater();
    if (reply.isError()) {
        dropWaiting();
        fail(reply.error().message());
    } else {
        m_abilities = reply.value();
        Q_EMIT appeared();
        const auto waiting = std::exchange(m_waiting, {});
        for (const Waiting& one : waiting)
            send(one.notification, one.answer);
    }
    if (pending() == 0)
        Q_EMIT settled();
}

void DBusNotifications::send(const Notification& notification, const Answer& answer) {
    // Services with body markup read "&", "<" and ">" as markup; the others show them as they are.
    const bool hasMarkup = m_abilities->contains(u"body-markup"_s);
    // A button that nobody answers is not offered: a hunt without a window has none.
    const bool isHeard = isSignalConnected(QMetaMethod::fromSignal(&NotificationCenter::opened));
    QStringList actions;
    if (isHeard && m_abilities->contains(u"actions"_s) && !notification.subject.isEmpty()) {
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
    auto* watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(message, notificationsTimeoutMs), this);
    const QString subject = actions.isEmpty() ? QString() : notification.subject;
    const auto taken = [this, watcher, subject, answer, service = m_service] {
        watcher->deleteLater();
        --m_sent;
        if (answer)
            answer(!watcher->isError());
        const bool isCurrent = service == m_service;
        if (watcher->isError()) {
            if (isCurrent)
                m_abilities.reset();
            fail(watcher->error().message());
        } else if (isCurrent && !subject.isEmpty()) {
            m_shown.insert(QDBusPendingReply<uint>(*watcher).value(), {subject});
        }
        if (pending() == 0)
            Q_EMIT settled();
    };
    connect(watcher, &QDBusPendingCallWatcher::finished, this, taken);
}

/// Comes before the choice, where it comes at all.
void DBusNotifications::tokenGiven(uint id, const QString& token) {
    if (const auto one = m_shown.find(id); one != m_shown.end())
        one->activationToken = token.toUtf8();
}

void DBusNotifications::chosen(uint id, const QString& action) {
    const Shown one = m_shown.value(id);
    if (one.subject.isEmpty())
        return;
    // For the window, or the browser.
    if (!one.activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", one.activationToken);
    if (action == defaultAction)
        Q_EMIT opened(one.subject);
    else if (action == ownAction)
        Q_EMIT actionChosen(one.subject);
}

/// Some services send the choice after this, but in the same breath.
void DBusNotifications::closed(uint id, uint) {
    QMetaObject::invokeMethod(this, [this, id] { m_shown.remove(id); }, Qt::QueuedConnection);
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
