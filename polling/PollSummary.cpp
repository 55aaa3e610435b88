// SPDX-License-Identifier: MIT
#include "polling/PollSummary.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

/// A list with anything but texts in it counts as missing.
QStringList texts(const QJsonValue& list) {
    QStringList result;
    for (const auto& text : list.toArray()) {
        if (!text.isString())
            return {};
        result.append(text.toString());
    }
    return result;
}

} // namespace

QJsonObject PollSummary::toJson() const {
    QJsonObject object{{u"at"_s, secondsSince1970(at)},
                       {u"searches"_s, searches},
                       {u"fetched"_s, fetched},
                       {u"matches"_s, matches},
                       {u"new"_s, newAlerts},
                       {u"soldout"_s, soldOut},
                       {u"errors"_s, QJsonArray::fromStringList(errors)}};
    if (!notes.isEmpty())
        object.insert(u"notes"_s, QJsonArray::fromStringList(notes));
    return object;
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
    summary.errors = texts(object[u"errors"]);
    summary.notes = texts(object[u"notes"]);
    return summary;
}
