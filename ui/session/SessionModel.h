// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "airline/Standing.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

/// How it stands between Tindra and the airline, in words. The pill, the dashboard, the sidebar's
/// card, the panel and the onboarding all show this one, so that they agree.
class SessionModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(bool isWell READ isWell NOTIFY changed)
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

    /// `session` and `standBack` must outlive the model.
    SessionModel(SessionState& session, StandBack& standBack, Actions actions);

    /// In a line; the time of the last confirmation is in the user's time zone.
    QString text() const;
    /// The session lives, and nothing keeps the site from answering.
    bool isWell() const { return now() == Standing::signedIn; }
    bool isLoggedOut() const { return now() == Standing::signedOut; }
    /// The site asks to be left alone, and nothing that the user can do comes first.
    bool isRefused() const { return now() == Standing::refused; }

    /// These two are of the session alone, whatever else is the matter.
    bool isLoggedIn() const { return login() == SASLoginStatus::Case::loggedIn; }
    bool isChecking() const { return login() == SASLoginStatus::Case::checking; }

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
    SASLoginStatus::Case login() const { return m_session.loginStatus().state; }
    Standing now() const {
        return standing(login(), m_standBack.isOn(), m_session.isSiteUnreachable());
    }

    SessionState& m_session;
    StandBack& m_standBack;
    Actions m_actions;
};
