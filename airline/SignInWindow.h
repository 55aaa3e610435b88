// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

class Capture;
class CookieVault;
class HostWindow;
class NavHosts;
class SessionState;
class WebView;

/// The window in which the user signs in, with the same web view that looks up fares when it is
/// hidden.
class SignInWindow : public QObject {
    Q_OBJECT
public:
    static QString title();
    static QString instruction();
    static QString button();

    /// All but `site` must outlive this object.
    SignInWindow(HostWindow& window, WebView& view, Clock& clock, SessionState& state,
                 Capture& capture, CookieVault& vault, NavHosts& navHosts, Site site);

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
    WebView& m_view;
    Clock& m_clock;
    SessionState& m_state;
    Capture& m_capture;
    CookieVault& m_vault;
    NavHosts& m_navHosts;
    Site m_site;
    int m_openings = 0;
};
