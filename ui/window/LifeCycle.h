// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPoint>
#include <QtQml/qqmlregistration.h>

#include <optional>

class MenuBarPanel;
class Notifier;
class Safekeeping;
class Tray;

/// When the window comes and goes, and what becomes of the hunt then.
class LifeCycle : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(LifeCycleModel)
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool windowShown READ isWindowShown NOTIFY windowShownChanged)
    /// The user has closed the window and is asked whether to go on without one.
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY askingChanged)
    /// What becomes of the hunt without the window.
    Q_PROPERTY(QString question READ question NOTIFY hasTrayChanged)
    /// There is a way back to a window that is hidden.
    Q_PROPERTY(bool canHide READ canHide NOTIFY hasTrayChanged)
    Q_PROPERTY(bool hasTray READ hasTray NOTIFY hasTrayChanged)
public:
    /// Whether a second start of Tindra reaches this one.
    enum class SecondStart { reaches, isLost };

    /// All must outlive the object.
    LifeCycle(Tray& tray, MenuBarPanel& panel, Notifier& notifier, Safekeeping& kept,
              SecondStart secondStart);

    bool isWindowShown() const { return m_isWindowShown; }
    bool isAsking() const { return m_isAsking; }
    bool hasTray() const;
    bool canHide() const { return hasTray() || m_secondStart == SecondStart::reaches; }
    QString question() const;

    /// At the start; a `hidden` window is shown all the same where nothing would bring it back.
    void start(bool hidden);
    /// Brings the window to the front, and makes it if need be.
    Q_INVOKABLE void showWindow();
    /// The user has closed the window. Where there is a tray the hunt goes on, and that is said
    /// once in a lifetime; where it cannot be said, and where there is no tray, the user is asked.
    Q_INVOKABLE void closeWindow();
    /// The answers.
    Q_INVOKABLE void keepHunting();
    Q_INVOKABLE void stay();
    Q_INVOKABLE void quit() { Q_EMIT quitRequested(); }
    /// From a button of the window, where there is no icon to press.
    Q_INVOKABLE void showPanel() { Q_EMIT panelInWindowRequested(); }

Q_SIGNALS:
    void windowShownChanged();
    void askingChanged();
    void hasTrayChanged();
    /// The window, shown already, is wanted in front.
    void raiseRequested();
    /// At `place` on the screen, or in a corner when that is absent.
    void panelRequested(std::optional<QPoint> place);
    /// In a corner of the window.
    void panelInWindowRequested();
    void quitRequested();

private:
    void setWindowShown(bool shown);
    void setAsking(bool asking);

    Tray& m_tray;
    Notifier& m_notifier;
    Safekeeping& m_kept;
    SecondStart m_secondStart;
    bool m_isWindowShown = false;
    bool m_isAsking = false;
};
