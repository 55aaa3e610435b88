// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"
#include "polling/PollSummary.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What one round of the hunt gave, for people and for programs. Pure values.
struct HuntReport {
    PollSummary summary;
    /// New offers, in the order they were found.
    QList<Match> found;
    /// Records of what has sold out.
    QList<SoldOut> soldOut;

    /// One line of JSON: "summary" as it is stored, "new" and "soldOut" with the records' own
    /// field names; "foundAt" in seconds since 1970.
    QByteArray toJson() const;
    /// Some Norwegian lines.
    QString toText() const;
};
