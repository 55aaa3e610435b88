// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"

#include <QString>
#include <QStringList>

/// Which cookies are the airline's own, and which are deleted.
namespace SAS {

/// What the names of known tracking cookies begin with.
const QStringList& trackerCookiePrefixes();

/// Whether `domain` names the site's or the identity provider's domain anywhere in it; the first,
/// coarse test of what is saved.
bool isAirlineDomain(const Site& site, const QString& domain);

/// Whether a cookie is to be deleted: it belongs to neither of the airline's two domains nor to a
/// sub-domain of one, or its name is a tracker's. A leading "." of the domain means nothing here.
bool isPrunableCookie(const Site& site, const QString& name, const QString& domain);

} // namespace SAS
