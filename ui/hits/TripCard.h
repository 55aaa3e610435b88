// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "ui/hits/CardText.h"

#include <QObject>

/// What the card of one offer shows, apart from what grows old.
struct TripCard {
    Q_GADGET
    Q_PROPERTY(bool soldOut MEMBER soldOut)
    /// City names, or a sold-out record's label.
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString badge MEMBER badge)
    Q_PROPERTY(bool isHomebound MEMBER isHomebound)
    Q_PROPERTY(QString flight MEMBER flight)
    Q_PROPERTY(QString departTime MEMBER departTime)
    Q_PROPERTY(QString departPlace MEMBER departPlace)
    Q_PROPERTY(QString arriveTime MEMBER arriveTime)
    Q_PROPERTY(QString arrivePlace MEMBER arrivePlace)
    Q_PROPERTY(QString dayShift MEMBER dayShift)
    Q_PROPERTY(QString duration MEMBER duration)
    Q_PROPERTY(QString fare MEMBER fare)
    Q_PROPERTY(QString goneText MEMBER goneText)
    Q_PROPERTY(bool isBookable MEMBER isBookable)
public:
    static TripCard of(const Match& match, std::optional<Direction> direction, bool isBookable);
    static TripCard of(const SoldOut& record);

    bool soldOut = false;
    QString title;
    /// Empty for none.
    QString badge;
    bool isHomebound = false;
    QString flight;
    QString departTime;
    QString departPlace;
    QString arriveTime;
    QString arrivePlace;
    /// Such as "+1"; empty for an arrival on the day of departure.
    QString dayShift;
    QString duration;
    QString fare;
    /// Of a sold-out record.
    QString goneText;
    bool isBookable = false;
};

/// What grows old on a card. Numbers, as QML takes them.
struct TripAge {
    Q_GADGET
    Q_PROPERTY(QString found MEMBER found)
    /// Value of CardText::Freshness.
    Q_PROPERTY(int freshness MEMBER freshness)
    /// Value of CardText::Border.
    Q_PROPERTY(int border MEMBER border)
public:
    static TripAge of(const Hit& hit, Instant now, QDate today);

    QString found;
    int freshness = 0;
    int border = 0;
};
