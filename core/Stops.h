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
    /// How somebody else has put it, who does not write as `text` does; mostly empty.
    QString other{};

    bool operator==(const Stops&) const = default;

    /// "direkte", or such as "2 stopp (CPH,BKK)".
    QString text() const;
    /// The reverse; a text of another form is kept, and has the number that it begins with. Absent
    /// for an empty one.
    static std::optional<Stops> fromText(const QString& text);
};
