// SPDX-License-Identifier: MIT
#include "app/MatchTable.h"

#include "core/DateFmt.h"

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

QStringList cells(const Match& m, const Site& site) {
    const auto address = site.bookingAddress(m.bookingURL);
    return {DateFmt::iso(m.travelDate()),
            cell(m.route().text()),
            cell(m.fromCity),
            cell(m.toCity),
            cell(m.depart.text()),
            cell(m.arrive.text()),
            cell(m.stopsText()),
            cell(m.key.flights),
            QString::number(m.durationMinutes),
            label(m.cabin),
            QString::number(m.seats),
            QString::number(m.points),
            yes(false),
            yes(m.isCommunity),
            utc(m.foundAt),
            address ? cell(QString::fromLatin1(address->toEncoded())) : QString()};
}

QStringList cells(const SoldOut& s, const Site&) {
    const QString none;
    const QString zero = u"0"_s;
    return {DateFmt::iso(s.key.date),
            cell(s.label),
            none,
            none,
            none,
            none,
            none,
            none,
            zero,
            cell(cabinLabels(s.cabins)),
            zero,
            zero,
            yes(true),
            yes(false),
            utc(s.foundAt),
            none};
}

} // namespace

namespace MatchTable {

QByteArray csv(const QList<Hit>& hits, const Site& site) {
    QString table =
        u"\uFEFFReisedato,Rute,Fra,Til,Avreise,Ankomst,Stopp,Flynummer,"
        u"Reisetid (min),Kabin,Seter,Poeng,Utsolgt,Fellesskap,Funnet (UTC),Adresse\r\n"_s;
    for (const Hit& hit : hits) {
        const QStringList row =
            std::visit([&site](const auto& one) { return cells(one, site); }, hit);
        table += row.join(u',') + u"\r\n"_s;
    }
    return table.toUtf8();
}

} // namespace MatchTable
