// SPDX-License-Identifier: MIT
#include "app/MatchTable.h"

#include "core/Cabin.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString cell(const QString& text) {
    const bool isFormula = !text.isEmpty() && QStringView(u"=+-@\t\r\n").contains(text.front());
    QString content = isFormula ? u'\'' + text : text;
    const bool isQuoted = std::any_of(content.begin(), content.end(),
                                      [](QChar c) { return QStringView(u"\",\r\n").contains(c); });
    return isQuoted ? u'"' + content.replace(u'"', u"\"\""_s) + u'"' : content;
}

QString utc(Instant instant) {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSince1970(instant)), Qt::UTC)
        .toString(u"yyyy-MM-dd HH:mm"_s);
}

QString yes(bool is) {
    return is ? u"ja"_s : u"nei"_s;
}

} // namespace

namespace MatchTable {

QByteArray csv(const QList<Match>& offers, const Site& site) {
    QString table =
        u"\uFEFFReisedato,Rute,Fra,Til,Avreise,Ankomst,Stopp,Flynummer,"
        u"Reisetid (min),Kabin,Seter,Poeng,Utsolgt,Fellesskap,Funnet (UTC),Adresse\r\n"_s;
    for (const Match& m : offers) {
        const auto address = site.bookingAddress(m.bookingURL);
        const QStringList cells{cell(m.travelDate),
                                cell(m.route),
                                cell(m.fromCity),
                                cell(m.toCity),
                                cell(m.depart),
                                cell(m.arrive),
                                cell(m.stopsText),
                                cell(m.flight),
                                QString::number(m.durationMinutes),
                                cell(cabinLabels(m.cabin)),
                                QString::number(m.seats),
                                QString::number(m.points),
                                yes(m.soldOut),
                                yes(m.isCommunity),
                                utc(m.foundAt),
                                address ? cell(QString::fromLatin1(address->toEncoded())) : u""_s};
        table += cells.join(u',') + u"\r\n"_s;
    }
    return table.toUtf8();
}

} // namespace MatchTable
