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

/// A table with a line of headings: comma-separated values after RFC 4180, UTF-8 with a byte order
/// mark, without which spreadsheets read Norwegian letters wrong. A text that a spreadsheet would
/// take for a formula gets an apostrophe in front.
QByteArray csv(const QList<Match>& offers, const Site& site);

/// One calendar event (RFC 5545) for every offer of a journey that is not sold out and has a
/// travel date: at the local times of the airports, without a zone, or all day where those are not
/// known. `now` is when the file is made.
QByteArray calendar(const JourneyGroup& journey, const Site& site, Instant now);

/// `title` as the name of a file, with `extension`; cut to a sane length.
QString fileName(const QString& title, const QString& extension);

} // namespace Export
