// SPDX-License-Identifier: MIT
#include "airline/SAS.h"

#include "core/DateFmt.h"

#include <QDateTime>
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
                  const QString& dateKey, const QString& origin, const QString& dest,
                  const QString& outDate) {
    const QUrl parsed(url, QUrl::StrictMode);
    if (!parsed.isValid() || !parsed.hasQuery())
        return false;
    QHash<QString, QString> items;
    for (const auto& [name, value] : QUrlQuery(parsed).queryItems(QUrl::FullyDecoded))
        items.insert(name.toLower(), value);
    return items.contains(originKey) && items.contains(destKey) && items.contains(dateKey) &&
           items.value(originKey).toUpper() == origin.toUpper() &&
           items.value(destKey).toUpper() == dest.toUpper() &&
           digitsOf(items.value(dateKey)) == digitsOf(outDate);
}

/// Instants with fractional seconds and a zone; others count as absent.
std::optional<QDateTime> parseIsoZ(const std::optional<QString>& text) {
    if (!text || !text->contains(u'.'))
        return std::nullopt;
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

RoutePair searchedPair(const QString& origin, const QString& destination, bool includePartners) {
    const bool fromHub =
        !includePartners && hubAwardDests().contains(destination) && !hubs().contains(origin);
    return {fromHub ? hubs().first() : origin, destination};
}

QString bookingURL(const Site& site, const QString& origin, const QString& dest,
                   const QString& dateISO) {
    if (origin.isEmpty() || dest.isEmpty() || dateISO.isEmpty())
        return {};
    const QString search = u"OW_%1-%2-%3_a1c0i0y0"_s.arg(origin.toUpper(), dest.toUpper(),
                                                         QString(dateISO).remove(u'-'));
    const QUrl url(site.origin + u"/book/flights/?search="_s + search +
                   u"&view=upsell&bookingFlow=points&sortBy=rec,rec&filterBy=all,all"_s);
    return url.toString(QUrl::FullyEncoded);
}

QString awardURL(const Site& site, const QString& origin, const QString& dest,
                 const QString& dateISO) {
    const QUrl url(site.origin +
                   u"/booking/award/flights?origin=%1&destination=%2"
                   u"&outboundDate=%3&adults=1"_s.arg(origin.toUpper(), dest.toUpper(), dateISO));
    return url.toString(QUrl::FullyEncoded);
}

bool offersURLMatches(const QString& url, const QString& origin, const QString& dest,
                      const QString& outDate) {
    return queryMatches(url, u"from"_s, u"to"_s, u"outdate"_s, origin, dest, outDate);
}

bool awardURLMatches(const QString& url, const QString& origin, const QString& dest,
                     const QString& outDate) {
    return queryMatches(url, u"origin"_s, u"destination"_s, u"outbounddate"_s, origin, dest,
                        outDate);
}

QMap<QString, int> matchingCabins(const Fare& fare, const CabinSet& wanted, int minSeats,
                                  int maxStops) {
    QMap<QString, int> cabins;
    if (fare.numberOfStops > maxStops)
        return cabins;
    const int need = std::max(minSeats, 1);
    for (const QString& cabin : wanted) {
        const auto seats = fare.availability.constFind(cabin);
        if (seats != fare.availability.constEnd() && *seats >= need)
            cabins.insert(cabin, *seats);
    }
    return cabins;
}

QStringList expandDates(const QString& from, const QString& to, int cap) {
    const auto first = DateFmt::parseIso(from);
    if (!first)
        return {};
    const QDate last = std::max(*first, DateFmt::parseIso(to).value_or(*first));
    QStringList dates;
    for (QDate date = *first; date <= last && dates.size() < cap; date = date.addDays(1))
        dates.append(date.toString(u"yyyyMMdd"_s));
    return dates;
}

QString dashedDate(const QString& compact) {
    if (compact.size() != 8)
        return compact;
    return compact.left(4) + u'-' + compact.mid(4, 2) + u'-' + compact.mid(6);
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
