// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SessionState.h"
#include "airline/StandBack.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

/// How it stands between Tindra and the airline, in words. The pill, the dashboard's banner, the
/// sidebar's card and the panel all show one of these, so that they agree: that nobody is signed in
/// comes first, then that the site asks to be left alone, then that it cannot be reached.
class SASLoginPill : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(SASLoginPillModel)
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(bool isLoggedIn READ isLoggedIn NOTIFY changed)
    Q_PROPERTY(bool isLoggedOut READ isLoggedOut NOTIFY changed)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
    Q_PROPERTY(bool isRefused READ isRefused NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(QString bannerTitle READ bannerTitle NOTIFY changed)
    Q_PROPERTY(QString bannerText READ bannerText NOTIFY changed)
    Q_PROPERTY(QString cardText READ cardText NOTIFY changed)
public:
    struct Actions {
        /// Shows the sign-in window.
        std::function<void()> openLogin;
        /// Asks the site although it asks to be left alone.
        std::function<void()> tryNow;
    };

    /// `session` and `standBack` must outlive the pill.
    SASLoginPill(SessionState& session, StandBack& standBack, Actions actions);

    /// What is known of the session, or that the site cannot be reached; the time of its last
    /// confirmation is in the user's time zone.
    QString text() const;
    bool isLoggedIn() const {
        return is(SASLoginStatus::Case::loggedIn) && !isRefused() && !m_session.isSiteUnreachable();
    }
    bool isLoggedOut() const { return is(SASLoginStatus::Case::loggedOut); }
    bool isChecking() const { return is(SASLoginStatus::Case::checking); }

    /// The site asks to be left alone, and nothing that the user can do comes first.
    bool isRefused() const { return m_standBack.isOn() && !isLoggedOut(); }
    /// Why the hunt gets no data, in a line; empty when it does.
    QString warning() const;
    /// What the banner and the card say while something is to be done; empty when nothing is.
    QString bannerTitle() const;
    QString bannerText() const;
    QString cardText() const;

    Q_INVOKABLE void openLogin() { m_actions.openLogin(); }
    Q_INVOKABLE void tryNow() { m_actions.tryNow(); }

Q_SIGNALS:
    void changed();

private:
    bool is(SASLoginStatus::Case state) const { return m_session.loginStatus().state == state; }

    SessionState& m_session;
    StandBack& m_standBack;
    Actions m_actions;
};
