// SPDX-License-Identifier: MIT
#include "platform/linux/StatusNotifierHost.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr int watcherTimeoutMs = 5000;
/// The service's name is its interface's.
const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;

} // namespace

StatusNotifierHost::StatusNotifierHost(QDBusConnection bus) : m_bus(std::move(bus)) {
    // A call on such a connection never gets an answer.
    if (!m_bus.isConnected()) {
        m_isKnown = true;
        return;
    }
    auto* owner =
        new QDBusServiceWatcher(watcherName, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusNotifierHost::ask);
    for (const QString& signal :
         {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect(watcherName, watcherPath, watcherName, signal, this, SLOT(ask()));
    ask();
}

StatusNotifierHost::~StatusNotifierHost() = default;

void StatusNotifierHost::ask() {
    auto message = QDBusMessage::createMethodCall(watcherName, watcherPath,
                                                  u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << watcherName << u"IsStatusNotifierHostRegistered"_s;
    // To ask is not to want one started.
    message.setAutoStartService(false);
    m_question =
        std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(message, watcherTimeoutMs));
    connect(m_question.get(), &QDBusPendingCallWatcher::finished, this, [this] {
        const QDBusPendingReply<QDBusVariant> reply = *m_question;
        set(!reply.isError() && reply.value().variant().toBool());
    });
}

void StatusNotifierHost::set(bool isThere) {
    const bool wasKnown = std::exchange(m_isKnown, true);
    if (std::exchange(m_isThere, isThere) != isThere || !wasKnown)
        Q_EMIT changed();
}
