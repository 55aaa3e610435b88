// SPDX-License-Identifier: MIT
#include "polling/PollSummary.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

QJsonObject PollSummary::toJson() const {
    return {{u"at"_s, secondsSince1970(at)},
            {u"searches"_s, searches},
            {u"fetched"_s, fetched},
            {u"matches"_s, matches},
            {u"new"_s, newAlerts},
            {u"soldout"_s, soldOut},
            {u"errors"_s, QJsonArray::fromStringList(errors)}};
}

std::optional<PollSummary> PollSummary::fromJson(const QString& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    PollSummary summary;
    summary.at = instantFromSeconds(object[u"at"].toDouble());
    summary.searches = object[u"searches"].toInt();
    summary.fetched = object[u"fetched"].toInt();
    summary.matches = object[u"matches"].toInt();
    summary.newAlerts = object[u"new"].toInt();
    summary.soldOut = object[u"soldout"].toInt();
    for (const auto& error : object[u"errors"].toArray()) {
        // A list with anything but texts in it counts as missing.
        if (!error.isString()) {
            summary.errors.clear();
            break;
        }
        summary.errors.append(error.toString());
    }
    return summary;
}
