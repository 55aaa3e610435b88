// SPDX-License-Identifier: MIT
#include "airline/Site.h"

#include "core/Err.h"

#include <QUrl>

using namespace Qt::StringLiterals;

Site Site::fromEnvironment(const QProcessEnvironment& environment) {
    Site site;
    const auto take = [&environment](const QString& name, QString& target) {
        if (const QString value = environment.value(name); !value.isEmpty())
            target = value.toLower();
    };
    take(u"TINDRA_SITE_ORIGIN"_s, site.origin);
    take(u"TINDRA_SITE_DOMAIN"_s, site.domain);
    take(u"TINDRA_IDP_HOST"_s, site.identityHost);
    take(u"TINDRA_IDP_DOMAIN"_s, site.identityDomain);

    const auto isSet = [&environment](const QString& name) {
        return !environment.value(name).isEmpty();
    };
    if (isSet(u"TINDRA_IDP_HOST"_s) && !isSet(u"TINDRA_IDP_DOMAIN"_s))
        site.identityDomain = site.identityHost;

    const QUrl url(site.origin);
    if (url.host().isEmpty() || (url.scheme() != u"https" && url.scheme() != u"http"))
        throw Err{u"TINDRA_SITE_ORIGIN er ikke en nettadresse: «%1». Skriv den som "
                  u"https://vert eller http://vert:port."_s.arg(site.origin)};
    if (isSet(u"TINDRA_SITE_ORIGIN"_s) && !isSet(u"TINDRA_SITE_DOMAIN"_s))
        site.domain = url.host();
    if (url.host() != site.domain && !url.host().endsWith(u'.' + site.domain))
        throw Err{u"TINDRA_SITE_DOMAIN «%1» passer ikke til nettstedet «%2»: verten må være "
                  u"domenet selv eller ligge under det."_s.arg(site.domain, site.origin)};
    while (site.origin.endsWith(u'/'))
        site.origin.chop(1);
    return site;
}

std::optional<QUrl> Site::bookingAddress(const QString& text) const {
    const QUrl url(text, QUrl::StrictMode);
    const QUrl own(origin);
    const bool isOnSite = url.host() == domain || url.host().endsWith(u'.' + domain);
    if (!url.isValid() || url.scheme() != own.scheme() || url.port() != own.port() || !isOnSite ||
        !url.userInfo().isEmpty())
        return std::nullopt;
    return url;
}
