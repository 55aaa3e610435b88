// SPDX-License-Identifier: MIT
#pragma once

#include "standin/Counters.h"
#include "standin/HttpServer.h"
#include "standin/Options.h"
#include "standin/Pages.h"
#include "standin/Sessions.h"

#include <QMap>

namespace standin {

/// The host at which members sign in: a form for the user name, one for the password, and a
/// single-sign-on session that brings them back to the site without a form.
class IdentityProvider {
public:
    /// What the site learns about a member that the provider has sent back to it.
    struct Grant {
        bool isSilent = false; ///< single sign-on, no form
    };

    IdentityProvider(const Options& options, const Origins& origins, Counters& counters);

    HttpResponse answer(const HttpRequest& request);

    /// The grant behind a code; each code counts once.
    std::optional<Grant> redeem(const QString& code);

    /// Whether a form of the site itself may let this member in. Without the challenge's token,
    /// where one is required, nobody is.
    bool accepts(const QString& user, const QString& password);

    /// Ends every single-sign-on session.
    void expireSso();

    const QString& lastUser() const { return m_lastUser; }
    const QString& lastPassword() const { return m_lastPassword; }

    QJsonObject state() const { return m_sessions.state(); }
    void restore(const QJsonObject& state) { m_sessions.restore(state); }

private:
    /// One visitor's way through the forms.
    struct Flow {
        QString siteState; ///< the site's own mark, handed back to it
        QString user;      ///< as submitted; empty before
        QString challenge; ///< the token that the form must bring
        bool isSignedIn = false;
    };

    HttpResponse authorize(const HttpRequest& request);
    HttpResponse resume(const QString& key, const Flow& flow);
    HttpResponse backToSite(const QString& siteState, bool isSilent);
    HttpResponse form(const QString& name, const QString& key, Flow& flow, const QString& error);
    HttpResponse submitUser(const HttpRequest& request, const QString& key, Flow& flow);
    HttpResponse submitPassword(const HttpRequest& request, const QString& key, Flow& flow);
    bool isRight(const QString& user);
    bool hasToken(const HttpRequest& request, const Flow& flow) const;
    void setSsoCookie(HttpResponse& response, const QByteArray& token) const;

    const Options& m_options;
    const Origins& m_origins;
    Counters& m_counters;
    Sessions m_sessions;
    QMap<QString, Flow> m_flows;
    QMap<QString, Grant> m_codes;
    QString m_lastUser;
    QString m_lastPassword;
};

} // namespace standin
