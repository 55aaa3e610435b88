// SPDX-License-Identifier: MIT
#include "app/HuntReport.h"

#include "app/MatchOutput.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

QByteArray HuntReport::toJson() const {
    const auto array = [](const auto& hits) {
        QJsonArray list;
        for (const auto& hit : hits)
            list.append(MatchOutput::object(hit));
        return list;
    };
    return QJsonDocument(QJsonObject{{u"summary"_s, summary.toJson()},
                                     {u"new"_s, array(found)},
                                     {u"soldOut"_s, array(soldOut)}})
        .toJson(QJsonDocument::Compact);
}

QString HuntReport::toText() const {
    QStringList lines{
        u"Runden er ferdig: %1 overvåkere, %2 reiser gjennomgått, %3 passer, %4 nye plasser, "
        u"%5 utsolgt."_s.arg(summary.searches)
            .arg(summary.fetched)
            .arg(summary.matches)
            .arg(summary.newAlerts)
            .arg(summary.soldOut)};
    if (!found.isEmpty())
        lines.append(u"Nytt:"_s);
    for (const Match& match : found)
        lines.append(MatchOutput::line(match));
    for (const SoldOut& record : soldOut)
        lines.append(MatchOutput::line(record));
    if (!summary.errors.isEmpty())
        lines.append(u"Feil:"_s);
    for (const QString& error : summary.errors)
        lines.append(u"  "_s + error);
    if (!summary.notes.isEmpty())
        lines.append(u"Ufullstendig:"_s);
    for (const QString& note : summary.notes)
        lines.append(u"  "_s + note);
    return lines.join(u'\n');
}
