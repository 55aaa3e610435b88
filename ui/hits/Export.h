// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "ui/hits/JourneyGroup.h"

#include <QByteArray>

/// Offers in the forms that other programs read. Pure functions.
namespace Export {

/// An offer as lines of text for a message to somebody; with its address only where that may be
/// opened.
QString text(const Match& match, const Site& site);

/// One calendar event (RFC 5545) for every offer of a journey that is not sold out and has a
/// travel date: at the local times of the airports, without a zone, or all day where those are not
/// known. `now` is when the file is made.
QByteArray calendar(const JourneyGroup& journey, const Site& site, Instant now);

/// `title` as the name of a file, with `extension`; cut to a sane length.
QString fileName(const QString& title, const QString& extension);

} // namespace Export
