// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Instance.h"

#include <QDBusConnection>
#include <QLockFile>
#include <QObject>

/// A lock file in the folder says who is first, and a name on the session bus, made from the
/// folder's path, takes the commands.
class DBusInstance final : public QObject, public Instance {
    Q_OBJECT
public:
    DBusInstance(const QString& folder, const QDBusConnection& bus);
    ~DBusInstance() override;

    bool isFirst() const override { return m_isFirst; }
    void serve(Handler handler) override;
    void answerDesktop(std::function<void()> activate, std::function<void()> checkNow) override;
    QCoro::Task<std::optional<CommandAnswer>> pass(QStringList arguments) override;

private:
    QDBusConnection m_bus;
    QString m_name;
    QObject* m_object = nullptr;
    QLockFile m_lock;
    bool m_isFirst = true;
};
