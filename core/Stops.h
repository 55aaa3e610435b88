// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Where an itinerary is broken on its way.
struct Stops {
    int number = 0;
    /// Codes of the airports between, in flight order; not all of them may be known.
    QStringList codes;

    bool operator==(const Stops&) const = default;

    /// "direkte", or such as "2 stopp (CPH,BKK)".
    QString text() const;
    /// The reverse. A number is enough; absent for a text that says nothing of stops.
    static std::optional<Stops> fromText(const QString& text);
};
