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

QString encodeCabins(CabinSet cabins) {
    QStringList texts;
    for (const Cabin cabin : cabins)
        texts.append(rawValue(cabin));
    return texts.join(u',');
}

CabinSet decodeCabins(const QString& text) {
    CabinSet cabins;
    for (const QString& piece : text.split(u',', Qt::SkipEmptyParts)) {
        if (const auto cabin = cabinFromRaw(piece))
            cabins.insert(*cabin);
    }
    return cabins;
}

QString cabinLabels(CabinSet cabins) {
    QStringList labels;
    for (const Cabin cabin : cabins)
        labels.append(label(cabin));
    return labels.join(u", "_s);
}
