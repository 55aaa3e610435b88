// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Fare.h"
#include "airline/Leg.h"
#include "airline/Site.h"

#include <QByteArray>
#include <QList>

#include <memory>
#include <optional>

/// Bodies above this many bytes are not read.
inline constexpr qsizetype largestBody = 16 * 1024 * 1024;

/// Reads the two kinds of offer responses. Bytes in, values out; it keeps only its buffers between
/// calls, and the answers depend on nothing but the arguments.
///
/// Nothing in a response is an error: a missing key or a value of another type than expected gives
/// the default that Fare names, and an entry that is no object is skipped. A number counts as an
/// integer when it has no fraction; beyond 32 bits it is cut to the nearest that fits.
class OfferParser {
public:
    explicit OfferParser(Site site);
    ~OfferParser();
    Q_DISABLE_COPY_MOVE(OfferParser)

    /// The fares of an ordinary response, in no particular order, one for every flight object,
    /// also without any award seat. `leg` stands in for codes that a flight lacks.
    /// Absent when the body is not a JSON object in valid UTF-8, is nested more than 1,024 deep, is
    /// larger than `largestBody`, holds a number that no double can, or has no `outboundFlights` of
    /// the response's own shape: an error is no answer without flights.
    std::optional<QList<Fare>> parseOffers(const QByteArray& body, const Route& leg);
    /// The same for an award response, whose sold-out flights are left out.
    std::optional<QList<Fare>> parseAwardOffers(const QByteArray& body, const Route& leg);

    /// The one of the two that reads answers of the leg's flow.
    std::optional<QList<Fare>> parse(const QByteArray& body, const Leg& leg);

private:
    struct Buffers;
    Site m_site;
    std::unique_ptr<Buffers> m_buffers;
};
