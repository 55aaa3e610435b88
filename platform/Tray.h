// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPoint>

#include <optional>

/// The application's place in the desktop's status area.
class Tray : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Whether the desktop has a status area now; it may come and go.
    virtual bool isAvailable() const = 0;
    virtual void show() = 0;
    /// One line about how the hunt goes, where the pointer rests on the icon.
    virtual void setStatus(const QString& text) = 0;

Q_SIGNALS:
    /// The icon was clicked; `place` is where on the screen, absent where the desktop tells not.
    void activated(std::optional<QPoint> place);
    /// Chosen in the icon's menu.
    void openChosen();
    void checkChosen();
    void quitChosen();
    void availabilityChanged();
};
