// SPDX-License-Identifier: MIT
#include "airline/CookieRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString trimmedDots(QString domain) {
    while (domain.startsWith(u'.'))
        domain.remove(0, 1);
    while (domain.endsWith(u'.'))
        domain.chop(1);
    return domain;
}

} // namespace

namespace SAS {

const QStringList& trackerCookiePrefixes() {
    static const QStringList prefixes{u"_ga"_s,  u"_gid"_s,   u"_gcl"_s,  u"_fbp"_s,  u"_fbc"_s,
                                      u"_tt"_s,  u"ttcsid"_s, u"_scid"_s, u"_clck"_s, u"_clsk"_s,
                                      u"_uet"_s, u"__rtbh"_s, u"FPID"_s,  u"FPAU"_s,  u"FPLC"_s,
                                      u"MUID"_s, u"__txn"_s};
    return prefixes;
}

bool isAirlineDomain(const Site& site, const QString& domain) {
    const QString lower = domain.toLower();
    return lower.contains(site.domain) || lower.contains(site.identityDomain);
}

bool isPrunableCookie(const Site& site, const QString& name, const QString& domain) {
    const QString own = trimmedDots(domain.toLower());
    const auto isIn = [&own](const QString& parent) {
        return own == parent || own.endsWith(u'.' + parent);
    };
    if (!isIn(site.domain) && !isIn(site.identityDomain))
        return true;
    const QStringList& prefixes = trackerCookiePrefixes();
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&name](const QString& prefix) { return name.startsWith(prefix); });
}

} // namespace SAS
