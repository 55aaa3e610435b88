// SPDX-License-Identifier: MIT
#pragma once

#include "standin/HttpServer.h"
#include "standin/IdentityProvider.h"
#include "standin/Options.h"
#include "standin/Pages.h"
#include "standin/Sessions.h"

#include <QMap>

namespace standin {

/// The site's side of the sign-in: the addresses below /auth/ and the site's own session.
class SiteSignIn {
public:
    SiteSignIn(const Options& options, const Origins& origins, IdentityProvider& provider);

    /// Answers addresses below /auth/.
    HttpResponse answer(const HttpRequest& request);

    /// Redirects to the provider's form, which even visitors see whom the provider knows.
    /// `returnTo`: path and query on the site for afterwards.
    HttpResponse toForm(const QString& returnTo);

    bool isSignedIn(const HttpRequest& request) const;

    /// Whether this visitor may see offers: everybody, unless signing in is required.
    bool maySeeOffers(const HttpRequest& request) const;

    /// Ends every session of the site.
    void expireSessions() { m_sessions.clear(); }

    QJsonObject state() const { return m_sessions.state(); }
    void restore(const QJsonObject& state) { m_sessions.restore(state); }

private:
    HttpResponse login(const HttpRequest& request);
    HttpResponse callback(const HttpRequest& request);
    HttpResponse toProvider(const QString& returnTo, bool asksEverybody);
    HttpResponse signedIn(const QString& returnTo, bool isSilent);
    const Sessions::Session* session(const HttpRequest& request) const;

    const Options& m_options;
    const Origins& m_origins;
    IdentityProvider& m_provider;
    Sessions m_sessions;
    QMap<QString, QString> m_returnTo; ///< where to go after signing in, by state
};

} // namespace standin
