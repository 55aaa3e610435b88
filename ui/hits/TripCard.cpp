// SPDX-License-Identifier: MIT
#include "ui/hits/TripCard.h"

using namespace Qt::StringLiterals;

TripCard TripCard::of(const Match& match, const QString& direction, bool isBookable) {
    TripCard card;
    card.soldOut = match.soldOut;
    if (match.soldOut) {
        card.title = match.route;
        card.badge = u"UTSOLGT"_s;
        card.goneText = CardText::soldOut(match);
        return card;
    }
    card.title = match.places();
    card.badge = match.isCommunity ? u"FELLESSKAP"_s : direction;
    card.isHomebound = !match.isCommunity && direction == u"Hjemreise";
    card.flight = match.flight;
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

TripAge TripAge::of(const Match& match, Instant now, QDate today) {
    return {CardText::found(match.foundAt, now, today),
            static_cast<int>(CardText::freshness(match.foundAt, now)),
            static_cast<int>(CardText::border(match, now))};
}
