// SPDX-License-Identifier: MIT
#include "core/DateFmt.h"

using namespace Qt::StringLiterals;

namespace DateFmt {

QString iso(QDate date) {
    return date.toString(u"yyyy-MM-dd"_s);
}

std::optional<QDate> parseIso(const QString& text) {
    const QDate date = QDate::fromString(text, u"yyyy-MM-dd"_s);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

QString ago(std::optional<Instant> instant, Instant now) {
    if (!instant)
        return u"ikke sjekket enda"_s;
    const double seconds = (now - *instant).count();
    if (seconds < 60)
        return u"akkurat nå"_s;
    const auto whole = static_cast<qint64>(seconds);
    if (seconds < 3600)
        return u"%1 min siden"_s.arg(whole / 60);
    if (seconds < 86400)
        return u"%1 t siden"_s.arg(whole / 3600);
    return u"%1 d siden"_s.arg(whole / 86400);
}

QString shortDate(const QString& date) {
    const QStringList pieces = date.split(u'-', Qt::SkipEmptyParts);
    if (pieces.size() != 3)
        return date;
    return pieces[2] + u'.' + pieces[1] + u'.' + pieces[0].right(2);
}

QString compact(const QString& dateTime) {
    if (dateTime.size() < 16)
        return dateTime;
    const QString spaced = QString(dateTime).replace(u'T', u' ');
    const QStringList pieces = spaced.left(10).split(u'-', Qt::SkipEmptyParts);
    if (pieces.size() != 3)
        return dateTime;
    return pieces[2] + u'.' + pieces[1] + u' ' + spaced.mid(11, 5);
}

} // namespace DateFmt
