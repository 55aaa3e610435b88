// SPDX-License-Identifier: MIT
#include "ui/hits/TripCard.h"

using namespace Qt::StringLiterals;

TripCard TripCard::of(const SoldOut& record) {
    TripCard card;
    card.soldOut = true;
    card.title = record.label;
    card.badge = u"UTSOLGT"_s;
    card.goneText = CardText::soldOut(record);
    return card;
}

TripCard TripCard::of(const Match& match, std::optional<Direction> direction, bool isBookable) {
    TripCard card;
    card.title = match.places();
    if (match.isCommunity)
        card.badge = u"FELLESSKAP"_s;
    else if (direction)
        card.badge = *direction == Direction::out ? u"Utreise"_s : u"Hjemreise"_s;
    card.isHomebound = !match.isCommunity && direction == Direction::home;
    card.flight = match.key.flights;
    const auto departure = CardText::departure(match);
    card.departTime = departure.time;
    card.departPlace = departure.place;
    const auto arrival = CardText::arrival(match);
    card.arriveTime = arrival.time;
    card.arrivePlace = arrival.place;
    card.dayShift = CardText::dayShift(match);
    card.duration = CardText::duration(match);
    card.fare = CardText::fare(match);
    card.isBookable = isBookable;
    return card;
}

TripAge TripAge::of(const Hit& hit, Instant now, QDate today) {
    const Instant foundAt = Hits::foundAt(hit);
    return {CardText::found(foundAt, now, today),
            static_cast<int>(CardText::freshness(foundAt, now)),
            static_cast<int>(CardText::border(hit, now))};
}
