// SPDX-License-Identifier: MIT
#include "standin/Answers.h"

#include "standin/Places.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace standin {

using namespace Qt::StringLiterals;

namespace {

constexpr auto localForm = u"yyyy-MM-ddTHH:mm:ss";

QString localText(const QDateTime& instant) {
    return instant.toString(localForm);
}

QString gmtText(const QDateTime& instant) {
    return instant.toUTC().toString(u"yyyy-MM-ddTHH:mm:ss.zzz") + u'Z';
}

QString hoursAndMinutes(const QDateTime& from, const QDateTime& to) {
    const qint64 minutes = from.secsTo(to) / 60;
    return QStringLiteral("%1:%2")
        .arg(minutes / 60, 2, 10, QChar(u'0'))
        .arg(minutes % 60, 2, 10, QChar(u'0'));
}

QString carrierName(const QString& code) {
    if (code == u"SK"_s)
        return QStringLiteral("Scandinavian Airlines");
    if (code == u"KL"_s)
        return QStringLiteral("KLM");
    if (code == u"AF"_s)
        return QStringLiteral("Air France");
    if (code == u"DL"_s)
        return QStringLiteral("Delta Air Lines");
    return QStringLiteral("Korean Air");
}

QJsonObject airport(const QString& code) {
    return {{u"code"_s, code}};
}

QJsonObject city(const QString& code) {
    QJsonObject result{{u"code"_s, code}};
    if (const QString name = cityOf(code); !name.isEmpty())
        result.insert(u"name"_s, name);
    return result;
}

// One paragraph of the fare rules, the only thing an answer is padded with.
QJsonArray conditions(int count) {
    QJsonArray result;
    for (int i = 0; i < count; ++i) {
        result.append(QJsonObject{
            {u"id"_s, QStringLiteral("COND-%1").arg(i, 4, 10, QChar(u'0'))},
            {u"category"_s, i % 2 ? QStringLiteral("REBOOKING") : QStringLiteral("REFUND")},
            {u"appliesBeforeDeparture"_s, i % 3 != 0},
            {u"fee"_s, QJsonObject{{u"currency"_s, u"NOK"_s}, {u"amount"_s, 250 + i % 7 * 100}}},
            {u"description"_s,
             u"Endringer kan gjøres frem til 24 timer før avreise mot gebyr og eventuell "
             "prisforskjell. Bonuspoeng settes inn på kontoen igjen innen ti virkedager."_s}});
    }
    return result;
}

QJsonArray segments(const Flight& flight) {
    QJsonArray result;
    for (const Segment& segment : flight.segments) {
        const QJsonObject carrier{{u"code"_s, segment.carrier},
                                  {u"name"_s, carrierName(segment.carrier)}};
        // The site writes the flight numbers of its partners as numbers.
        const QJsonValue number =
            flight.isPartner ? QJsonValue(segment.number) : QString::number(segment.number);
        result.append(
            QJsonObject{{u"id"_s, u'S' + QString::number(result.size() + 1)},
                        {u"departureAirport"_s, airport(segment.origin)},
                        {u"arrivalAirport"_s, airport(segment.destination)},
                        {u"departureDateTimeInLocal"_s, localText(segment.departs)},
                        {u"arrivalDateTimeInLocal"_s, localText(segment.arrives)},
                        {u"departureDateTimeInGmt"_s, gmtText(segment.departs)},
                        {u"arrivalDateTimeInGmt"_s, gmtText(segment.arrives)},
                        {u"duration"_s, hoursAndMinutes(segment.departs, segment.arrives)},
                        {u"marketingCarrier"_s, carrier},
                        {u"operatingCarrier"_s, carrier},
                        {u"flightNumber"_s, number}});
    }
    return result;
}

QJsonObject commonKeys(const Flight& flight) {
    const Segment& first = flight.segments.first();
    const Segment& last = flight.segments.last();
    return {{u"connectionDuration"_s, hoursAndMinutes(first.departs, last.arrives)},
            {u"stops"_s, flight.segments.size() - 1},
            {u"origin"_s, airport(first.origin)},
            {u"destination"_s, airport(last.destination)},
            {u"originCity"_s, city(first.origin)},
            {u"destinationCity"_s, city(last.destination)},
            {u"segments"_s, segments(flight)}};
}

// The seats of a cabin on each segment, the same on all of them.
QJsonArray fares(const Flight& flight, int seats, const QString& bookingClass) {
    QJsonArray result;
    for (qsizetype i = 0; i < flight.segments.size(); ++i) {
        result.append(QJsonObject{{u"segmentId"_s, u'S' + QString::number(i + 1)},
                                  {u"bookingClass"_s, bookingClass},
                                  {u"avlSeats"_s, seats}});
    }
    return result;
}

struct CabinWords {
    const char16_t* ordinary; // name in the ordinary flow
    const char16_t* award;    // name in the award flow
    const char16_t* family;
    const char16_t* bookingClass; // of award seats
};

CabinWords words(Cabin cabin) {
    switch (cabin) {
    case Cabin::Economy:
        return {u"ECONOMY", u"ECONOMY", u"GO", u"X"};
    case Cabin::Premium:
        return {u"PREMIUM", u"PREMIUM_ECONOMY", u"PLUS", u"R"};
    case Cabin::Business:
        return {u"BUSINESS", u"BUSINESS", u"BUSINESS", u"I"};
    case Cabin::First:
        break;
    }
    return {u"FIRST", u"FIRST", u"FIRST", u"O"};
}

QJsonObject product(const Flight& flight, const QString& name, int points, bool discounted,
                    int seats, const QString& bookingClass, int padding) {
    // With a discount on, the site leaves `points` at 0.
    QJsonObject result{
        {u"productName"_s, name},
        {u"price"_s,
         QJsonObject{{u"points"_s, discounted ? 0 : points},
                     {u"pointsAfterDiscount"_s, points},
                     {u"totalTax"_s, QJsonObject{{u"currency"_s, u"NOK"_s}, {u"amount"_s, 412}}}}},
        {u"fares"_s, fares(flight, seats, bookingClass)}};
    if (padding > 0)
        result.insert(u"conditions"_s, conditions(padding));
    return result;
}

QJsonObject ordinaryCabins(const Flight& flight, int padding) {
    QJsonObject result;
    int position = 0;
    for (auto it = flight.cabins.cbegin(); it != flight.cabins.cend(); ++it, ++position) {
        const CabinWords word = words(it.key());
        const QString family = QString::fromUtf16(word.family);
        // Any seat can be had for many points; these products are not award seats.
        QJsonObject products{{u"P_1"_s, product(flight, family, it->points * 3, false, 9,
                                                QStringLiteral("Y"), padding)},
                             {u"P_2"_s, product(flight, family + u" SMART"_s, it->points * 4, false,
                                                9, QStringLiteral("Y"), padding)}};
        QJsonObject families{{family, QJsonObject{{u"products"_s, products}}}};
        if (it->existed) {
            const QJsonObject bonus =
                product(flight, family + u" Bonus"_s, it->points, it.key() == Cabin::Premium,
                        it->seats, QString::fromUtf16(word.bookingClass), padding);
            families.insert(family + u"_BONUS"_s,
                            QJsonObject{{u"products"_s, QJsonObject{{u"P_3"_s, bonus}}}});
        }
        result.insert(QString::fromUtf16(word.ordinary), families);
    }
    return result;
}

QJsonObject ordinaryFlight(const Flight& flight, int padding) {
    const Segment& first = flight.segments.first();
    const Segment& last = flight.segments.last();
    QJsonObject result = commonKeys(flight);
    result.insert(u"startTimeInLocal"_s, localText(first.departs));
    result.insert(u"endTimeInLocal"_s, localText(last.arrives));
    result.insert(u"startTimeInGmt", gmtText(first.departs));
    result.insert(u"endTimeInGmt", gmtText(last.arrives));
    result.insert(u"cabins"_s, ordinaryCabins(flight, padding));
    return result;
}

QJsonObject awardFlight(const Flight& flight, int padding) {
    const Segment& first = flight.segments.first();
    const Segment& last = flight.segments.last();
    QJsonArray lowest;
    QJsonArray cabins;
    for (auto it = flight.cabins.cbegin(); it != flight.cabins.cend(); ++it) {
        if (!it->existed)
            continue;
        const CabinWords word = words(it.key());
        const QString bookingClass = QString::fromUtf16(word.bookingClass);
        const QJsonObject price{
            {u"ADT"_s, QJsonObject{{u"amount"_s, it->points}, {u"currency"_s, u"POINTS"_s}}}};
        QJsonObject entry{{u"cabin"_s, QString::fromUtf16(word.award)},
                          {u"avlSeats"_s, it->seats},
                          {u"price"_s, price},
                          {u"fares"_s, fares(flight, it->seats, bookingClass)}};
        lowest.append(entry);
        entry.remove(u"avlSeats"_s);
        entry.insert(u"availableSeats"_s, it->seats);
        if (padding > 0)
            entry.insert(u"conditions"_s, conditions(padding));
        cabins.append(entry);
    }
    QJsonObject result = commonKeys(flight);
    result.insert(u"isSoldOut"_s, !flight.hasSeats());
    result.insert(u"startDateTimeInLocal"_s, localText(first.departs));
    result.insert(u"endDateTimeInLocal"_s, localText(last.arrives));
    result.insert(u"startDateTimeInGmt", gmtText(first.departs));
    result.insert(u"endDateTimeInGmt", gmtText(last.arrives));
    result.insert(u"lowestFares"_s, lowest);
    result.insert(u"cabins"_s, cabins);
    if (padding > 0)
        result.insert(u"conditions"_s, conditions(padding));
    return result;
}

QByteArray compact(const QJsonObject& root) {
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

// Every padded place takes the same number of paragraphs, so the size grows evenly with it.
template<typename Write>
QByteArray padded(Write write, qsizetype bytes) {
    const QByteArray natural = write(0);
    if (bytes <= natural.size())
        return natural;
    const qsizetype step = (write(11).size() - write(1).size()) / 10;
    return step > 0 ? write(int((bytes - natural.size()) / step)) : natural;
}

} // namespace

QByteArray offersAnswer(const QList<Flight>& flights, qsizetype bytes) {
    return padded(
        [&flights](int padding) {
            QJsonObject outbound;
            for (const Flight& flight : flights) {
                if (!flight.isPartner)
                    outbound.insert(u"F_"_s + QString::number(outbound.size() + 1),
                                    ordinaryFlight(flight, padding));
            }
            return compact({{u"currency"_s, u"POINTS"_s}, {u"outboundFlights"_s, outbound}});
        },
        bytes);
}

QByteArray awardAnswer(const QList<Flight>& flights, qsizetype bytes) {
    return padded(
        [&flights](int padding) {
            QJsonArray outbound;
            for (const Flight& flight : flights)
                outbound.append(awardFlight(flight, padding));
            return compact({{u"currency"_s, u"POINTS"_s}, {u"outboundFlights"_s, outbound}});
        },
        bytes);
}

} // namespace standin
