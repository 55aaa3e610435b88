// SPDX-License-Identifier: MIT
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QUrl>

#include <optional>

/// Where the airline's site and its identity provider are. The only place that knows host names.
struct Site {
    /// Scheme, host and port of the Norwegian booking site, without a trailing slash.
    QString origin = QStringLiteral("https://www.sas.no");
    /// The domain that its cookies and hosts belong to.
    QString domain = QStringLiteral("sas.no");
    /// Host of the identity provider. Not confirmed against the live site, like its domain.
    QString identityHost = QStringLiteral("auth.flysas.com");
    QString identityDomain = QStringLiteral("flysas.com");

    bool operator==(const Site&) const = default;

    /// The defaults, each overridden by TINDRA_SITE_ORIGIN, TINDRA_SITE_DOMAIN, TINDRA_IDP_HOST
    /// or TINDRA_IDP_DOMAIN where that is set and not empty, in lower case as hosts are compared;
    /// an origin alone brings its host as the domain, and so does an identity host. Throws Err when
    /// the origin is not an http or https address with a host, or its host does not belong to the
    /// domain.
    static Site fromEnvironment(const QProcessEnvironment& environment);

    /// `text` as an address that may be opened for the user: absolute, with the origin's scheme
    /// and port, on the site's own domain, without a user name. Absent for any other; offers come
    /// from strangers too.
    std::optional<QUrl> bookingAddress(const QString& text) const;
};
