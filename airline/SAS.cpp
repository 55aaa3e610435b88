// SPDX-License-Identifier: MIT
#include "airline/SAS.h"

#include "core/DateFmt.h"

#include <QDateTime>
#include <QStringBuilder>
#include <QUrlQuery>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// One minute short of two days; anything longer counts as unknown.
constexpr int longestTravelMinutes = 2879;

QString digitsOf(const QString& text) {
    QString digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
                 [](QChar c) { return c.isDigit(); });
    return digits;
}

bool queryMatches(const QString& url, const QString& originKey, const QString& destKey,
                  const QString& dateKey, const Route& route, QDate date) {
    // The page wrote it, and pages may write what only a browser accepts.
    const QUrl parsed(url, QUrl::TolerantMode);
    if (!parsed.isValid() || !parsed.hasQuery())
        return false;
    QHash<QString, QString> items;
    for (const auto& [name, value] : QUrlQuery(parsed).queryItems(QUrl::FullyDecoded))
        items.insert(name.toLower(), value);
    return items.value(originKey).toUpper() == route.origin.toUpper() &&
           items.value(destKey).toUpper() == route.destination.toUpper() &&
           digitsOf(items.value(dateKey)) == DateFmt::compact(date);
}

/// An address text in its absolute, encoded form. Nearly all consist of characters that stay as
/// they are, and a response has a hundred of them, so those are not taken apart.
QString encodedAddress(const QString& text) {
    const bool staysAsItIs = std::all_of(text.begin(), text.end(), [](QChar c) {
        const char16_t code = c.unicode();
        return (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') ||
               (code >= u'0' && code <= u'9') || QStringView(u"-._~:/?&=,").contains(c);
    });
    return staysAsItIs ? text : QUrl(text).toString(QUrl::FullyEncoded);
}

/// "2025-03-01T10:15:00.000Z", the form that the airline writes, read without Qt's general parser;
/// absent for any other form and for digits that are no instant.
std::optional<QDateTime> parseUsualInstant(QStringView text) {
    constexpr QStringView form = u"dddd-dd-ddTdd:dd:dd.dddZ";
    if (text.size() != form.size())
        return std::nullopt;
    for (qsizetype i = 0; i < form.size(); ++i) {
        const bool isDigit = text[i] >= u'0' && text[i] <= u'9';
        if (form[i] == u'd' ? !isDigit : text[i] != form[i])
            return std::nullopt;
    }
    const auto number = [text](qsizetype from, qsizetype length) {
        int value = 0;
        for (const QChar digit : text.sliced(from, length))
            value = value * 10 + (digit.unicode() - u'0');
        return value;
    };
    const QDate date(number(0, 4), number(5, 2), number(8, 2));
    const QTime time(number(11, 2), number(14, 2), number(17, 2), number(20, 3));
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, Qt::UTC);
}

/// Instants with fractional seconds and a zone; others count as absent.
std::optional<QDateTime> parseIsoZ(const std::optional<QString>& text) {
    if (!text || !text->contains(u'.'))
        return std::nullopt;
    if (const auto usual = parseUsualInstant(*text))
        return usual;
    const QDateTime instant = QDateTime::fromString(*text, Qt::ISODateWithMs);
    // Without a zone designator the text is read as local time, which says nothing here.
    if (!instant.isValid() || instant.timeSpec() == Qt::LocalTime)
        return std::nullopt;
    return instant;
}

int knownDuration(qint64 minutes) {
    return minutes >= 1 && minutes <= longestTravelMinutes ? static_cast<int>(minutes) : 0;
}

} // namespace

namespace SAS {

const QStringList& hubs() {
    static const QStringList codes{u"CPH"_s};
    return codes;
}

const QSet<QString>& hubAwardDests() {
    static const QSet<QString> codes{u"HND"_s, u"NRT"_s, u"BKK"_s, u"SIN"_s, u"HKG"_s, u"PVG"_s,
                                     u"PEK"_s, u"PKX"_s, u"ICN"_s, u"DEL"_s, u"KUL"_s, u"SGN"_s};
    return codes;
}

Route searchedRoute(const Route& wished, bool includePartners) {
    const bool fromHub = !includePartners && hubAwardDests().contains(wished.destination) &&
                         !hubs().contains(wished.origin);
    return {fromHub ? hubs().first() : wished.origin, wished.destination};
}

QString bookingURL(const Site& site, const Route& route, QDate date) {
    if (route.origin.isEmpty() || route.destination.isEmpty() || !date.isValid())
        return {};
    return encodedAddress(site.origin % u"/book/flights/?search=OW_" % route.origin.toUpper() %
                          u'-' % route.destination.toUpper() % u'-' % DateFmt::compact(date) %
                          u"_a1c0i0y0&view=upsell&bookingFlow=points&sortBy=rec,rec"
                          u"&filterBy=all,all");
}

QString loginURL(const Site& site) {
    return site.origin + u"/auth/login?ui_locales=nb&returnTo=%2F"_s;
}

QString awardURL(const Site& site, const Route& route, QDate date) {
    return encodedAddress(site.origin % u"/booking/award/flights?origin=" % route.origin.toUpper() %
                          u"&destination=" % route.destination.toUpper() % u"&outboundDate=" %
                          DateFmt::iso(date) % u"&adults=1");
}

QString pageOf(const Site& site, const Leg& leg) {
    return leg.flow == Flow::award ? awardURL(site, leg.route, leg.date)
                                   : bookingURL(site, leg.route, leg.date);
}

bool offersURLMatches(const QString& url, const Route& route, QDate date) {
    return queryMatches(url, u"from"_s, u"to"_s, u"outdate"_s, route, date);
}

bool awardURLMatches(const QString& url, const Route& route, QDate date) {
    return queryMatches(url, u"origin"_s, u"destination"_s, u"outbounddate"_s, route, date);
}

bool isRequestOf(const Leg& leg, const QString& url) {
    return (leg.flow == Flow::award ? awardURLMatches : offersURLMatches)(url, leg.route, leg.date);
}

CabinNumbers matchingCabins(const Fare& fare, CabinSet wanted, int minSeats, int maxStops) {
    CabinNumbers cabins;
    if (fare.stops.number > maxStops)
        return cabins;
    const int need = std::max(minSeats, 1);
    for (const Cabin cabin : wanted) {
        const auto seats = fare.availability[cabin];
        if (seats && *seats >= need)
            cabins[cabin] = seats;
    }
    return cabins;
}

QList<QDate> expandDates(QDate from, QDate to, QDate earliest, int cap) {
    if (!from.isValid())
        return {};
    const QDate last = std::max(from, to);
    QList<QDate> dates;
    for (QDate date = std::max(from, earliest); date <= last && dates.size() < cap;
         date = date.addDays(1))
        dates.append(date);
    return dates;
}

int durationMinutes(const std::optional<QString>& startGmt, const std::optional<QString>& endGmt,
                    const std::optional<QString>& connection) {
    const auto start = parseIsoZ(startGmt);
    const auto end = parseIsoZ(endGmt);
    if (start && end) {
        if (const int minutes = knownDuration(start->msecsTo(*end) / 60000))
            return minutes;
    }
    if (!connection)
        return 0;
    QList<qint64> numbers;
    for (const QString& piece : connection->split(u':', Qt::SkipEmptyParts)) {
        bool isNumber = false;
        const qint64 number = piece.toInt(&isNumber);
        if (isNumber)
            numbers.append(number);
    }
    return numbers.size() < 2 ? 0 : knownDuration(numbers[0] * 60 + numbers[1]);
}

} // namespace SAS
