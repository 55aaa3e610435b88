// SPDX-License-Identifier: MIT
#include "ui/hits/CardText.h"

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

CardText::Endpoint endpoint(const QString& place, const LocalTime& at) {
    if (!at.isKnown())
        return {at.text(), place};
    return {at.time().toString(u"HH:mm"_s), joined({place, at.date().toString(u"dd.MM"_s)})};
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
    return joined({label(match.cabin), match.seats < 0 ? QString() : seats,
                   match.points < 1 ? QString() : Norwegian::number(match.points) + u" poeng"_s});
}

QString duration(const Match& match) {
    return joined({match.durationText().value_or(QString()), match.stopsText()});
}

QString soldOut(const SoldOut& record) {
    const QString text = (cabinLabels(record.cabins) + u" er ikke lenger tilgjengelig"_s).trimmed();
    return text.left(1).toUpper() + text.mid(1);
}

Endpoint departure(const Match& match) {
    return endpoint(match.route().origin, match.depart);
}

Endpoint arrival(const Match& match) {
    return endpoint(match.route().destination, match.arrive);
}

QString dayShift(const Match& match) {
    const bool areKnown = match.depart.isKnown() && match.arrive.isKnown();
    const qint64 days = areKnown ? match.depart.date().daysTo(match.arrive.date()) : 0;
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

Border border(const Hit& hit, Instant now) {
    if (Hits::isSoldOut(hit))
        return Border::soldOut;
    return now - Hits::foundAt(hit) < 12h ? Border::fresh : Border::none;
}

} // namespace CardText
