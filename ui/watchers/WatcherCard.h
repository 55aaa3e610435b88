// SPDX-License-Identifier: MIT
#pragma once

#include "core/Search.h"

#include <QString>

/// What the card of one watcher shows. Its texts are for display as plain text.
struct WatcherCard {
    Search search;
    /// Offers that can still be booked.
    int hits = 0;
    /// "Sjekket 9 min siden", "Pauset"; kept because it changes with the time.
    QString status;
    /// All its dates have passed, today.
    bool isPast = false;

    bool operator==(const WatcherCard&) const = default;

    static WatcherCard of(const Search& search, int hits, const Clock& clock);

    /// The name, or the route where there is none, on one line.
    QString title() const;
    /// The destinations, "JFK, EWR".
    QString prettyDests() const;
    /// The cabins in ascending order of their labels, "Business · Økonomi"; texts that are no cabin
    /// are left out.
    QString cabinsLabel() const;
    /// "SAS" or "SAS + PARTNERE".
    QString source() const;
    /// "OSL, BGO ⇄ JFK, EWR"; the arrow tells a round trip from a one-way journey.
    QString route() const;
    /// "Ut 01.03.27 – 31.03.27"; empty for a watcher without any outbound date.
    QString outbound() const;
    /// "Hjem …"; empty for a one-way watcher.
    QString homebound() const;
    /// "7 treff".
    QString hitsText() const;
    /// The title as the dialogs quote it: cut where it would fill the screen.
    QString quotedTitle() const;
};
