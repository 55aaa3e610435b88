// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"
#include "platform/Clock.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// A watcher: one journey that the user wants, as it is stored.
///
/// `origin` and `destination` are code lists as the user typed them; read them with `codes`. A date
/// that is not set, or could not be read, is invalid.
struct Search {
    /// Database row; 0 until the watcher is stored.
    qint64 id = 0;
    /// May be empty.
    QString name;
    QString origin;
    QString destination;
    CabinSet cabins{Cabin::business};
    int minSeats = 1;
    int maxStops = 2;
    QDate dateFrom;
    QDate dateTo;
    QDate returnDateFrom;
    QDate returnDateTo;
    /// Also accept flights of partner airlines.
    bool includePartners = false;
    /// The watcher takes part in polling.
    bool enabled = true;
    /// When a check of it last ended; absent if never.
    std::optional<Instant> lastChecked;
    /// Offers that satisfied it at that check.
    int lastFound = 0;

    bool operator==(const Search&) const = default;

    /// The name, or "origin → destination" where there is none.
    QString displayName() const;
    /// True when either end of the return window is set.
    bool isRoundTrip() const;
    /// Every day that it could be looked up for, out and home, is before `today`. A window without
    /// an end is its first day alone; one without a beginning is not past.
    bool isPast(QDate today) const;

    /// The codes of a code list, trimmed and in upper case; order and duplicates are kept.
    static QStringList codes(const QString& text);
};

/// Those that take part in polling, in their order.
QList<Search> enabledOf(QList<Search> searches);
