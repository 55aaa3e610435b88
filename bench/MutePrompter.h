// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>

/// Stands where the keychain's prompts are shown; their owner is away.
class MutePrompter : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.keyring.internal.Prompter")
public:
    MutePrompter()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                              QStringLiteral("prompter"))) {
        m_bus.registerObject(QStringLiteral("/org/gnome/keyring/Prompter"), this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(QStringLiteral("org.gnome.keyring.SystemPrompter"));
    }
    ~MutePrompter() override { QDBusConnection::disconnectFromBus(QStringLiteral("prompter")); }
    Q_DISABLE_COPY_MOVE(MutePrompter)

    int prompts() const { return m_prompts; }
    /// Sends the last prompt back.
    void refuse() {
        m_bus.send(m_last.createErrorReply(QDBusError::Failed, QStringLiteral("nobody")));
    }

public Q_SLOTS:
    void BeginPrompting(const QDBusObjectPath&, const QDBusMessage& message) {
        message.setDelayedReply(true);
        m_last = message;
        ++m_prompts;
    }
    void StopPrompting(const QDBusObjectPath&) {}

private:
    QDBusConnection m_bus;
    QDBusMessage m_last;
    int m_prompts = 0;
};
