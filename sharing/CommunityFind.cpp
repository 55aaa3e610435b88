// SPDX-License-Identifier: MIT
#include "sharing/CommunityFind.h"

#include "core/DateFmt.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestText = 200;
/// What the service takes; a name's letters may be two bytes each.
constexpr qsizetype longestName = 40;
constexpr qsizetype longestKey = 120;
constexpr qsizetype longestAddress = 2000;
constexpr double largestNumber = 10'000'000;
/// The service keeps a find for 90 minutes from when it was reported, which is after it was found;
/// the rest is for clocks that disagree.
constexpr std::chrono::minutes certainLife{80};

QString cut(QString text, qsizetype length = longestText) {
    text.truncate(length);
    // Characters that control, turn the text around or break the line are no part of a name.
    text.removeIf([](QChar c) {
        const auto category = c.category();
        return category == QChar::Other_Control || category == QChar::Other_Format ||
               category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
    });
    // Half of a pair is no character.
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    return text;
}

std::optional<QString> requiredText(const QJsonObject& object, QLatin1StringView name) {
    const QJsonValue value = object[name];
    return value.isString() ? std::optional(cut(value.toString())) : std::nullopt;
}

int wholeNumber(const QJsonValue& value) {
    const double number = value.toDouble();
    const bool isUsable = number >= 0 && number <= largestNumber && number == std::floor(number);
    return isUsable ? static_cast<int>(number) : 0;
}

} // namespace

QJsonObject CommunityFind::toJson(const Match& match) {
    return {{u"key"_s, match.key.text()},
            {u"cabin"_s, rawValue(match.cabin)},
            {u"route"_s, match.route().text()},
            {u"fromCity"_s, cut(match.fromCity, longestName)},
            {u"toCity"_s, cut(match.toCity, longestName)},
            {u"depart"_s, cut(match.depart.text(), longestName)},
            {u"arrive"_s, cut(match.arrive.text(), longestName)},
            {u"stopsText"_s, cut(match.stopsText(), longestName)},
            {u"flight"_s, match.key.flights},
            {u"durationMin"_s, match.durationMinutes},
            {u"seats"_s, match.seats},
            {u"points"_s, match.points},
            {u"travelDate"_s, DateFmt::iso(match.travelDate())},
            {u"bookingUrl"_s, match.bookingURL},
            {u"foundAt"_s, secondsSince1970(match.foundAt)}};
}

std::optional<Match> CommunityFind::fromJson(const QJsonObject& object, Instant now) {
    const auto key = requiredText(object, "key"_L1);
    const auto cabin = cabinFromRaw(object["cabin"_L1].toString());
    const auto route = requiredText(object, "route"_L1);
    if (!key || !cabin || !route)
        return std::nullopt;
    const auto text = [&object](QLatin1StringView name) { return cut(object[name].toString()); };
    Match match;
    match.key = FareKey::fromText(*key);
    // The parts say the same as the whole, or somebody has made it up.
    if (match.route().text() != *route)
        return std::nullopt;
    match.cabin = *cabin;
    match.fromCity = text("fromCity"_L1);
    match.toCity = text("toCity"_L1);
    match.depart = LocalTime::fromText(text("depart"_L1), match.travelDate());
    match.arrive = LocalTime::fromText(
        text("arrive"_L1), match.depart.isKnown() ? match.depart.date() : match.travelDate());
    match.stops = Stops::fromText(text("stopsText"_L1));
    match.durationMinutes = wholeNumber(object["durationMin"_L1]);
    match.seats = wholeNumber(object["seats"_L1]);
    match.points = wholeNumber(object["points"_L1]);
    match.bookingURL = cut(object["bookingUrl"_L1].toString(), longestAddress);
    match.foundAt =
        instantFromSeconds(std::clamp(object["foundAt"_L1].toDouble(), 0.0, secondsSince1970(now)));
    match.isCommunity = true;
    match.id = static_cast<qint64>(qHash(match.offer()));
    return match;
}

bool CommunityFind::isShareable(const Match& match) {
    const FareKey& key = match.key;
    return key.date.isValid() && !key.route.origin.isEmpty() && !key.flights.isEmpty() &&
           match.seats >= 1 && key.text().size() <= longestKey;
}

std::optional<CommunityFind::Answer> CommunityFind::read(const QByteArray& text) {
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    if (!object["hits"_L1].isArray())
        return std::nullopt;
    Answer answer{{}, !object["more"_L1].toBool()};
    const QJsonArray array = object["hits"_L1].toArray();
    for (const auto& value : array) {
        if (!value.isObject())
            return std::nullopt;
        answer.finds.append(value.toObject());
    }
    return answer;
}

QList<Match> CommunityFind::gone(const QList<Hit>& stored, const QList<Match>& answer,
                                 const QList<Route>& asked, const QSet<OfferId>& served,
                                 Instant now) {
    QSet<OfferId> present;
    for (const Match& find : answer)
        present.insert(find.offer());
    QList<Match> result;
    for (const Hit& hit : stored) {
        const auto* match = std::get_if<Match>(&hit);
        if (match && match->isCommunity && asked.contains(match->route()) &&
            served.contains(match->offer()) && !present.contains(match->offer()) &&
            now - match->foundAt < certainLife)
            result.append(*match);
    }
    return result;
}
