// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/// The desktop's notifications. Nothing here waits for the desktop's answer.
class NotificationCenter : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Asks for permission to show alerts with sound, where the desktop has such a question.
    virtual void requestAuthorization() = 0;
    /// Shows one notification at once, with the default sound. `title` and `body` are plain text;
    /// line feeds in the body are line breaks.
    virtual void post(const QString& title, const QString& body) = 0;
    /// Notifications that the desktop has not taken yet.
    virtual int pending() const = 0;

Q_SIGNALS:
    /// Notifications cannot be shown; `reason` says why and what to do, in Norwegian. Emitted at
    /// most once a run.
    void unavailable(const QString& reason);
    /// `pending()` has become 0.
    void settled();
};
