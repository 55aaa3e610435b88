// SPDX-License-Identifier: MIT
#include "ui/hits/CardText.h"

#include "core/Cabin.h"
#include "core/DateFmt.h"
#include "core/Norwegian.h"

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString dot = u" · "_s;

QString joined(QStringList pieces) {
    pieces.removeAll(QString());
    return pieces.join(dot);
}

QString placeIn(const QString& route, bool atEnd) {
    const QStringList places = route.split(u'-', Qt::SkipEmptyParts);
    if (places.isEmpty())
        return {};
    return atEnd ? places.last() : places.first();
}

CardText::Endpoint endpoint(const QString& place, const QString& text) {
    const QStringList pieces = text.split(u' ', Qt::SkipEmptyParts);
    if (pieces.size() != 2)
        return {text, place};
    return {pieces[1], joined({place, pieces[0]})};
}

/// The date nearest to `reference` whose day and month the text begins with, such as "07.03";
/// invalid when it does not.
QDate dateNear(const QString& text, QDate reference) {
    const QStringList pieces = text.section(u' ', 0, 0, QString::SectionSkipEmpty).split(u'.');
    if (pieces.size() != 2)
        return {};
    QDate nearest;
    for (int year = reference.year() - 1; year <= reference.year() + 1; ++year) {
        const QDate date(year, pieces[1].toInt(), pieces[0].toInt());
        if (date.isValid() && (!nearest.isValid() || std::abs(reference.daysTo(date)) <
                                                         std::abs(reference.daysTo(nearest))))
            nearest = date;
    }
    return nearest;
}

} // namespace

namespace CardText {

QDateTime utc(Instant instant) {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSince1970(instant)), Qt::UTC);
}

QString found(Instant foundAt, Instant now, QDate today) {
    const double age = (now - foundAt).count();
    if (age < 60)
        return u"Funnet akkurat nå"_s;
    if (age < 3600)
        return u"Funnet for %1 min siden"_s.arg(static_cast<int>(age / 60));
    const QDate day = utc(foundAt).toLocalTime().date();
    const QString time = Norwegian::time(foundAt);
    if (day == today)
        return u"Funnet i dag "_s + time;
    return u"Funnet %1 %2"_s.arg(Norwegian::dayAndMonth(day), time);
}

QString fare(const Match& match) {
    const QString seats =
        u"%1 %2"_s.arg(QString::number(match.seats), match.seats == 1 ? u"sete"_s : u"seter"_s);
    return joined({cabinLabel(match.cabin), match.seats < 0 ? QString() : seats,
                   match.points < 1 ? QString() : Norwegian::number(match.points) + u" poeng"_s});
}

QString duration(const Match& match) {
    return joined({match.durationText().value_or(QString()), match.stopsText});
}

QString soldOut(const Match& match) {
    const QString text = (cabinLabels(match.cabin) + u" er ikke lenger tilgjengelig"_s).trimmed();
    return text.left(1).toUpper() + text.mid(1);
}

Endpoint departure(const Match& match) {
    return endpoint(placeIn(match.route, false), match.depart);
}

Endpoint arrival(const Match& match) {
    return endpoint(placeIn(match.route, true), match.arrive);
}

QString dayShift(const Match& match) {
    // The texts have no year; the day of travel has.
    const QDate travel = DateFmt::parseIso(match.travelDate).value_or(utc(match.foundAt).date());
    const QDate start = dateNear(match.depart, travel);
    const QDate end = start.isValid() ? dateNear(match.arrive, start) : QDate();
    const qint64 days = end.isValid() ? start.daysTo(end) : 0;
    if (days == 0)
        return {};
    return (days > 0 ? u'+' : u'−') + QString::number(std::abs(days));
}

Freshness freshness(Instant foundAt, Instant now) {
    const auto age = now - foundAt;
    if (age < 1h)
        return Freshness::hour;
    return age < 6h ? Freshness::sixHours : Freshness::older;
}

Border border(const Match& match, Instant now) {
    if (match.soldOut)
        return Border::soldOut;
    return now - match.foundAt < 12h ? Border::fresh : Border::none;
}

} // namespace CardText
