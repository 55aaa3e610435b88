// SPDX-License-Identifier: MIT
#include "app/MatchOutput.h"

#include "core/Cabin.h"
#include "core/DateFmt.h"
#include "core/Norwegian.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

QJsonObject object(const Match& m) {
    return {{u"id"_s, m.id},
            {u"searchId"_s, m.searchId},
            {u"key"_s, m.key},
            {u"route"_s, m.route},
            {u"fromCity"_s, m.fromCity},
            {u"toCity"_s, m.toCity},
            {u"depart"_s, m.depart},
            {u"arrive"_s, m.arrive},
            {u"stopsText"_s, m.stopsText},
            {u"flight"_s, m.flight},
            {u"durationMinutes"_s, m.durationMinutes},
            {u"cabin"_s, m.cabin},
            {u"seats"_s, m.seats},
            {u"points"_s, m.points},
            {u"travelDate"_s, m.travelDate},
            {u"bookingURL"_s, m.bookingURL},
            {u"soldOut"_s, m.soldOut},
            {u"foundAt"_s, secondsSince1970(m.foundAt)},
            {u"isCommunity"_s, m.isCommunity}};
}

QString offerLine(const Match& m) {
    const QString points =
        m.points > 0 ? u"%1 poeng"_s.arg(Norwegian::number(m.points)) : u"pris ukjent"_s;
    return u"  %1  %2  %3  %4  %5  %6  %7"_s.arg(
        DateFmt::shortDate(m.travelDate), m.route, cabinLabel(m.cabin).leftJustified(8),
        u"%1 seter"_s.arg(m.seats), points.rightJustified(14), m.flight, m.stopsText);
}

} // namespace

namespace MatchOutput {

QJsonArray array(const QList<Match>& matches) {
    QJsonArray list;
    for (const Match& match : matches)
        list.append(object(match));
    return list;
}

QByteArray json(const QList<Match>& matches) {
    return QJsonDocument(array(matches)).toJson(QJsonDocument::Compact);
}

QString line(const Match& match) {
    return match.soldOut ? u"  Utsolgt: %1  %2"_s.arg(match.route, cabinLabels(match.cabin))
                         : offerLine(match);
}

} // namespace MatchOutput
