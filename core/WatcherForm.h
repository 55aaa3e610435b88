// SPDX-License-Identifier: MIT
#pragma once

#include "core/Search.h"

/// What somebody asks of a watcher, wherever they do: in the search form, in the sheet that edits
/// one, on the command line. The limits are the same everywhere.
struct WatcherForm {
    static constexpr int fewestSeats = 1;
    /// The most that may be asked for.
    static constexpr int mostSeats = 9;
    static constexpr int mostStops = 3;
    /// Days of one window that are looked at.
    static constexpr int mostDays = 330;
    /// Letters of a name.
    static constexpr int longestName = 100;
    /// Chosen where no cabin is.
    static constexpr CabinSet usualCabins{Cabin::business};

    /// Both days included. One without a beginning is not asked for.
    struct Window {
        QDate from;
        QDate to;
        bool operator==(const Window&) const = default;
    };

    QString name;
    /// Code lists as they were typed.
    QString origin;
    QString destination;
    CabinSet cabins = usualCabins;
    int minSeats = fewestSeats;
    int maxStops = 2;
    bool includePartners = false;
    Window out;
    /// Invalid days for a one-way journey.
    Window home;

    bool operator==(const WatcherForm&) const = default;

    /// Both ends name something; whether the codes exist is not asked.
    bool isComplete() const;
    /// The watcher that is stored: code lists in upper case and without spaces, numbers within
    /// their limits. What the form knows nothing of is taken from `stored`.
    Search applied(Search stored = {}) const;
    /// What `search` asks for, with numbers within their limits.
    static WatcherForm of(const Search& search);

    static int seats(int wanted);
    static int stops(int wanted);
};
