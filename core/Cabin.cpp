// SPDX-License-Identifier: MIT
#include "core/Cabin.h"

#include <QStringList>

using namespace Qt::StringLiterals;

QString rawValue(Cabin cabin) {
    switch (cabin) {
    case Cabin::economy:
        return u"economy"_s;
    case Cabin::premeco:
        return u"premeco"_s;
    case Cabin::business:
        return u"business"_s;
    case Cabin::first:
        return u"first"_s;
    }
    return {};
}

std::optional<Cabin> cabinFromRaw(QStringView text) {
    for (const Cabin cabin : allCabins) {
        if (rawValue(cabin) == text)
            return cabin;
    }
    return std::nullopt;
}

QString label(Cabin cabin) {
    switch (cabin) {
    case Cabin::economy:
        return u"Økonomi"_s;
    case Cabin::premeco:
        return u"Premium"_s;
    case Cabin::business:
        return u"Business"_s;
    case Cabin::first:
        return u"First"_s;
    }
    return {};
}

QString cabinLabel(const QString& text) {
    const auto cabin = cabinFromRaw(text);
    return cabin ? label(*cabin) : text;
}

QString cabinLabels(const QString& texts) {
    QStringList labels;
    for (const QString& text : texts.split(u',', Qt::SkipEmptyParts))
        labels.append(cabinLabel(text));
    return labels.join(u", "_s);
}

QString encodeCabins(const CabinSet& cabins) {
    QStringList texts(cabins.begin(), cabins.end());
    texts.sort();
    return texts.join(u',');
}

CabinSet decodeCabins(const QString& text) {
    const QStringList pieces = text.split(u',', Qt::SkipEmptyParts);
    return CabinSet(pieces.begin(), pieces.end());
}
