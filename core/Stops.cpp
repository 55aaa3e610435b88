// SPDX-License-Identifier: MIT
#include "core/Stops.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

QString Stops::text() const {
    if (!other.isEmpty())
        return other;
    if (number == 0)
        return u"direkte"_s;
    return u"%1 stopp (%2)"_s.arg(QString::number(number), codes.join(u','));
}

std::optional<Stops> Stops::fromText(const QString& text) {
    if (text.isEmpty())
        return std::nullopt;
    static const QRegularExpression form(u"^([0-9]{1,3})(?: stopp \\(([^)]*)\\))?"_s);
    const auto match = form.match(text);
    Stops stops{match.captured(1).toInt(), match.captured(2).split(u',', Qt::SkipEmptyParts), {}};
    if (stops.text() != text)
        stops = {stops.number, {}, text};
    return stops;
}
