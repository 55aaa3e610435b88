// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/// The window that holds the web view. It is made once, hidden, and shown and hidden again; the
/// view in it lives on while it is hidden.
class HostWindow : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    enum class Activation {
        /// It gets the keyboard and comes to the front.
        takeFocus,
        /// It comes to the front; the user goes on typing where they were.
        leaveFocus,
    };

    /// Shows the window in the middle of the screen.
    virtual void show(Activation activation) = 0;
    /// Hides it, which is not a closing.
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
    /// A sentence that says why the window is there, shown above the page; none when empty.
    virtual void setReason(const QString& reason) = 0;

Q_SIGNALS:
    /// The bar's button was pressed.
    void finished();
    /// The user closed the window. It is hidden when this comes.
    void closed();
};
