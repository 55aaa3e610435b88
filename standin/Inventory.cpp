// SPDX-License-Identifier: MIT
#include "standin/Inventory.h"

#include "standin/Places.h"

#include <QCryptographicHash>
#include <QTimeZone>
#include <QtEndian>

#include <algorithm>

namespace standin {
namespace {

enum class Story { NeverOpen, StaysOpen, OpensAtSecond, GoneAtSecond, GoneAtThird, ComesBack };

struct Chance {
    Story story;
    int perMille;
};

// Award seats are scarce: 17 % of economy and of business cabins show seats at the first look, so
// that about a third of the flights offer something. The rest of the 1000 never opens.
constexpr Chance usualChances[] = {{Story::StaysOpen, 60},
                                   {Story::GoneAtSecond, 50},
                                   {Story::GoneAtThird, 30},
                                   {Story::ComesBack, 30},
                                   {Story::OpensAtSecond, 130}};
constexpr Chance rareChances[] = {
    {Story::StaysOpen, 30}, {Story::GoneAtSecond, 20}, {Story::OpensAtSecond, 50}};

template<typename Chances>
Story pickStory(const Chances& chances, int perMille) {
    for (const Chance& chance : chances) {
        if (perMille < chance.perMille)
            return chance.story;
        perMille -= chance.perMille;
    }
    return Story::NeverOpen;
}

int seatsAt(Story story, int full, int look) {
    // Told again from the beginning after the third look, so that there is always news.
    look = (look - 1) % 3 + 1;
    switch (story) {
    case Story::NeverOpen:
        return 0;
    case Story::StaysOpen:
        return full;
    case Story::OpensAtSecond:
        return look >= 2 ? full : 0;
    case Story::GoneAtSecond:
        return look <= 1 ? full : 0;
    case Story::GoneAtThird: // at least two, so that the second look sees it shrink
        return look <= 1 ? std::max(full, 2) : look == 2 ? 1 : 0;
    case Story::ComesBack:
        return look == 2 ? 0 : full;
    }
    return 0;
}

QTimeZone zoneOf(const QString& code) {
    const Place* place = findPlace(code);
    const QTimeZone zone = place ? QTimeZone(place->zone) : QTimeZone();
    return zone.isValid() ? zone : QTimeZone::utc();
}

bool isLongHaul(const Leg& leg) {
    const Place* from = findPlace(leg.origin);
    const Place* to = findPlace(leg.destination);
    return (from && from->isIntercontinental) || (to && to->isIntercontinental);
}

bool isHub(const QString& code) {
    return code == u"CPH" || code == u"OSL" || code == u"ARN";
}

bool isAmerican(const QString& code) {
    const Place* place = findPlace(code);
    return place && QByteArrayView(place->zone).startsWith("America/");
}

// The changes of plane of the airline's own flights, the likeliest first.
QList<QStringList> ownRoutings(const Leg& leg) {
    const auto touches = [&leg](const QString& code) {
        return leg.origin == code || leg.destination == code;
    };
    const QString cph = QStringLiteral("CPH");
    const QString osl = QStringLiteral("OSL");
    const QString arn = QStringLiteral("ARN");
    const QString other = touches(arn) ? osl : arn;
    if (isLongHaul(leg)) {
        if (touches(cph))
            return {{}, {other}, {}};
        if (isHub(leg.origin) || isHub(leg.destination))
            return {{cph}, {cph}, {cph}};
        const bool goesOut = !findPlace(leg.origin) || !findPlace(leg.origin)->isIntercontinental;
        return {{cph}, goesOut ? QStringList{osl, cph} : QStringList{cph, osl}, {cph}};
    }
    if (touches(cph))
        return {{}, {}, {touches(osl) ? arn : osl}};
    if (isHub(leg.origin) || isHub(leg.destination))
        return {{}, {}, {cph}};
    return {{cph}, {osl}, {cph}};
}

struct PartnerRouting {
    const char16_t* carrier;
    QStringList stops;
};

QList<PartnerRouting> partnerRoutings(const Leg& leg) {
    QList<PartnerRouting> all{{u"KL", {QStringLiteral("AMS")}}, {u"AF", {QStringLiteral("CDG")}}};
    if (isAmerican(leg.origin) || isAmerican(leg.destination))
        all.prepend({u"DL", {QStringLiteral("BOS")}});
    else if (isLongHaul(leg))
        all.prepend({u"KE", {QStringLiteral("ICN")}});
    all.removeIf([&leg](const PartnerRouting& routing) {
        return routing.stops.contains(leg.origin) || routing.stops.contains(leg.destination);
    });
    return all;
}

// Saver prices of one seat, one way.
int pointsFor(Cabin cabin, bool longHaul, bool partner) {
    int points = 0;
    switch (cabin) {
    case Cabin::Economy:
        points = longHaul ? 30000 : 10000;
        break;
    case Cabin::Premium:
        points = longHaul ? 45000 : 16000;
        break;
    case Cabin::Business:
        points = longHaul ? 60000 : 24000;
        break;
    case Cabin::First:
        points = 110000;
        break;
    }
    return partner ? points + points / 5 : points;
}

} // namespace

bool Flight::hasSeats() const {
    return std::any_of(cabins.cbegin(), cabins.cend(),
                       [](const AwardCabin& cabin) { return cabin.seats > 0; });
}

Inventory::Inventory(quint64 seed) : m_seed(seed) {}

quint64 Inventory::draw(const QString& about) const {
    const QByteArray key = QByteArray::number(m_seed) + ' ' + about.toUtf8();
    return qFromBigEndian<quint64>(
        QCryptographicHash::hash(key, QCryptographicHash::Sha1).constData());
}

Flight Inventory::fly(const Leg& leg, const QStringList& stops, const QString& carrier,
                      int index) const {
    const QString route = leg.origin + leg.destination + carrier + QString::number(index);
    const quint64 chance = draw(route);
    const QStringList airports = QStringList{leg.origin} + stops + QStringList{leg.destination};

    Flight flight;
    flight.isPartner = carrier != u"SK";
    // Spread over the day, to five minutes: 06:00 at the earliest, before 20:30 at the latest.
    const int minutes = 360 + index % 4 * 215 + int(chance % 44) * 5;
    QDateTime departs(leg.date, QTime(minutes / 60, minutes % 60), zoneOf(leg.origin));
    for (qsizetype i = 0; i + 1 < airports.size(); ++i) {
        const QString& from = airports[i];
        const QString& to = airports[i + 1];
        const quint64 detail = draw(route + from + to);
        const int airborne = 35 + int(kilometresBetween(from, to) / 13.8);
        const QDateTime arrives = departs.addSecs(60 * (airborne / 5 * 5)).toTimeZone(zoneOf(to));
        const int number = (airports.size() == 2 ? 400 : 900) + int(detail % 900);
        flight.segments.append({from, to, carrier, number, departs, arrives});
        departs = arrives.addSecs(60 * (55 + 5 * qint64((detail >> 20) % 26)));
    }
    return flight;
}

void Inventory::offerSeats(Flight& flight, const Leg& leg, int index, int look) const {
    const bool longHaul = isLongHaul(leg);
    QList<Cabin> cabins{Cabin::Economy, Cabin::Premium, Cabin::Business};
    if (flight.isPartner && longHaul)
        cabins.append(Cabin::First);
    for (const Cabin cabin : cabins) {
        const quint64 chance =
            draw(leg.key() + QString::number(index) + u'/' + QString::number(int(cabin)));
        const int perMille = int(chance % 1000);
        const bool usual = cabin == Cabin::Economy || cabin == Cabin::Business;
        const Story story =
            usual ? pickStory(usualChances, perMille) : pickStory(rareChances, perMille);
        const int full = 1 + int((chance >> 32) % (cabin == Cabin::Economy ? 9 : 4));
        AwardCabin& award = flight.cabins[cabin];
        award.seats = seatsAt(story, full, look);
        award.points = pointsFor(cabin, longHaul, flight.isPartner);
        for (int earlier = 1; earlier <= std::min(look, 3) && !award.existed; ++earlier)
            award.existed = seatsAt(story, full, earlier) > 0;
    }
}

QList<Flight> Inventory::flights(const Leg& leg, int look) const {
    const quint64 chance = draw(leg.origin + leg.destination);
    QList<Flight> result;
    int index = 0;

    const QList<QStringList> routings = ownRoutings(leg);
    const qsizetype own = 2 + qsizetype(chance % 2);
    for (const QStringList& stops : routings.first(own))
        result.append(fly(leg, stops, QStringLiteral("SK"), index++));

    const QList<PartnerRouting> partners = partnerRoutings(leg);
    const qsizetype wanted =
        isLongHaul(leg) ? 1 + qsizetype((chance >> 8) % 2) : qsizetype((chance >> 8) % 2);
    for (const PartnerRouting& routing : partners.first(std::min(wanted, partners.size())))
        result.append(fly(leg, routing.stops, QString::fromUtf16(routing.carrier), index++));

    for (qsizetype i = 0; i < result.size(); ++i)
        offerSeats(result[i], leg, int(i), look);
    return result;
}

} // namespace standin
