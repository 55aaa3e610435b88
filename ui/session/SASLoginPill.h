// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SessionState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

/// The session at the airline in words; the pill, the dashboard's banner and the sidebar's card all
/// show one of these.
class SASLoginPill : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(SASLoginPillModel)
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(bool isLoggedIn READ isLoggedIn NOTIFY changed)
    Q_PROPERTY(bool isLoggedOut READ isLoggedOut NOTIFY changed)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
public:
    /// `session` must outlive the pill; `openLogin` shows the sign-in window.
    SASLoginPill(SessionState& session, std::function<void()> openLogin);

    /// What is known of the session, or that the site cannot be reached; the time of its last
    /// confirmation is in the user's time zone.
    QString text() const;
    bool isLoggedIn() const {
        return is(SASLoginStatus::Case::loggedIn) && !m_session.isSiteUnreachable();
    }
    bool isLoggedOut() const { return is(SASLoginStatus::Case::loggedOut); }
    bool isChecking() const { return is(SASLoginStatus::Case::checking); }

    Q_INVOKABLE void openLogin() { m_openLogin(); }

Q_SIGNALS:
    void changed();

private:
    bool is(SASLoginStatus::Case state) const { return m_session.loginStatus().state == state; }

    SessionState& m_session;
    std::function<void()> m_openLogin;
};
