// SPDX-License-Identifier: MIT
#include "app/MatchOutput.h"

#include "core/Cabin.h"
#include "core/DateFmt.h"
#include "core/Norwegian.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace MatchOutput {

QJsonObject object(const Match& m) {
    return {{u"id"_s, m.id},
            {u"searchId"_s, m.searchId},
            {u"key"_s, m.key.text()},
            {u"route"_s, m.route().text()},
            {u"fromCity"_s, m.fromCity},
            {u"toCity"_s, m.toCity},
            {u"depart"_s, m.depart.text()},
            {u"arrive"_s, m.arrive.text()},
            {u"stopsText"_s, m.stopsText()},
            {u"flight"_s, m.key.flights},
            {u"durationMinutes"_s, m.durationMinutes},
            {u"cabin"_s, rawValue(m.cabin)},
            {u"seats"_s, m.seats},
            {u"points"_s, m.points},
            {u"travelDate"_s, DateFmt::iso(m.travelDate())},
            {u"bookingURL"_s, m.bookingURL},
            {u"soldOut"_s, false},
            {u"foundAt"_s, secondsSince1970(m.foundAt)},
            {u"isCommunity"_s, m.isCommunity}};
}

/// The members that every hit has; what a record knows nothing of is empty.
QJsonObject object(const SoldOut& s) {
    Match record;
    record.id = s.id;
    record.searchId = s.searchId;
    record.foundAt = s.foundAt;
    QJsonObject members = object(record);
    members[u"key"] = s.key.text() + u":soldout"_s;
    members[u"route"] = s.label;
    members[u"cabin"] = encodeCabins(s.cabins);
    members[u"travelDate"] = DateFmt::iso(s.key.date);
    members[u"soldOut"] = true;
    return members;
}

QByteArray json(const QList<Hit>& hits) {
    QJsonArray list;
    for (const Hit& hit : hits)
        list.append(std::visit([](const auto& one) { return object(one); }, hit));
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

QString line(const Match& m) {
    const QString points =
        m.points > 0 ? u"%1 poeng"_s.arg(Norwegian::number(m.points)) : u"pris ukjent"_s;
    return u"  %1  %2  %3  %4  %5  %6  %7"_s.arg(
        DateFmt::shortDate(m.travelDate()), m.route().text(), label(m.cabin).leftJustified(8),
        u"%1 seter"_s.arg(m.seats), points.rightJustified(14), m.key.flights, m.stopsText());
}

QString line(const SoldOut& s) {
    return u"  Utsolgt: %1  %2"_s.arg(s.label, cabinLabels(s.cabins));
}

QString line(const Hit& hit) {
    return std::visit([](const auto& one) { return line(one); }, hit);
}

} // namespace MatchOutput
