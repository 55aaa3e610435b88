// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SignInContext.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

class HostWindow;

/// The window in which the user signs in, with the same web view that looks up fares when it is
/// hidden.
class SignInWindow : public QObject {
    Q_OBJECT
public:
    static QString title();
    static QString instruction();
    static QString button();

    /// `window`, which shows the context's web view, must outlive this object.
    SignInWindow(HostWindow& window, SignInContext context);

    /// Shows the window with the sign-in page.
    void openLogin();
    /// The user says that they are signed in: the window goes, and what it led to is judged.
    void finishLogin();
    /// Shows the window as it is, with a sentence that says what the user is needed for.
    void showForHelp(const QString& reason);
    void hide();
    bool isVisible() const;

Q_SIGNALS:
    /// The user has finished, or closed the window; whether the session lives is to be confirmed
    /// now.
    void loginFinished();

private:
    void loginWindowClosed();
    void judge();
    QCoro::Task<> loadLoginPage();

    HostWindow& m_window;
    SignInContext m_context;
    int m_openings = 0;
};
