// SPDX-License-Identifier: MIT
#include "airports/Tables.h"

#include "airports/Airports.h"

#include <QFile>
#include <QStringList>

namespace Airports {
namespace Tables {

QList<std::pair<QString, QString>> rows(const char* file) {
    QFile source(QStringLiteral(":/airports/") + QLatin1String(file));
    if (!source.open(QIODevice::ReadOnly))
        qFatal("airports: the table %s is not in the program", file);
    QStringList lines = QString::fromUtf8(source.readAll()).split(u'\n');
    if (lines.last().isEmpty())
        lines.removeLast();

    QList<std::pair<QString, QString>> result;
    result.reserve(lines.size());
    for (const QString& line : lines) {
        const qsizetype tab = line.indexOf(u'\t');
        if (tab != 3 || line.size() == tab + 1)
            qFatal("airports: %s, line %lld is not a code, a tab and a text", file,
                   static_cast<long long>(result.size() + 1));
        result.emplace_back(line.left(tab), line.mid(tab + 1));
    }
    return result;
}

const QHash<QString, QString>& metroAreas() {
    static const QHash<QString, QString> table = [] {
        QHash<QString, QString> byAirport;
        for (const auto& [code, city] : rows("metro-areas.tsv"))
            byAirport.insert(code, city);
        return byAirport;
    }();
    return table;
}

} // namespace Tables

namespace {

QList<Airport> airportsIn(const char* file) {
    QList<Airport> airports;
    for (const auto& [code, city] : Tables::rows(file))
        airports.append({code, city});
    return airports;
}

Region regionNamed(const QString& name) {
    static const QHash<QString, Region> regions{
        {QStringLiteral("usa"), Region::usa},
        {QStringLiteral("latam"), Region::latam},
        {QStringLiteral("asia"), Region::asia},
        {QStringLiteral("middleEast"), Region::middleEast},
        {QStringLiteral("africa"), Region::africa},
        {QStringLiteral("oceania"), Region::oceania},
        {QStringLiteral("europe"), Region::europe},
    };
    const auto found = regions.constFind(name);
    if (found == regions.cend())
        qFatal("airports: regions.tsv names the unknown region %s", qUtf8Printable(name));
    return *found;
}

} // namespace

const QList<Airport>& kuraterte() {
    static const QList<Airport> table = airportsIn("curated.tsv");
    return table;
}

const QList<Airport>& genererte() {
    static const QList<Airport> table = airportsIn("generated.tsv");
    return table;
}

const QList<Airport>& all() {
    static const QList<Airport> table = kuraterte() + genererte();
    return table;
}

const QHash<QString, Airport>& byCode() {
    static const QHash<QString, Airport> table = [] {
        QHash<QString, Airport> airports;
        airports.reserve(all().size());
        for (const Airport& airport : all())
            airports.insert(airport.code, airport);
        return airports;
    }();
    return table;
}

const QList<std::pair<Region, QSet<QString>>>& regionSets() {
    static const QList<std::pair<Region, QSet<QString>>> table = [] {
        QList<std::pair<Region, QSet<QString>>> sets;
        for (const Region region : allRegions) {
            if (region != Region::other)
                sets.emplace_back(region, QSet<QString>());
        }
        for (const auto& [code, name] : Tables::rows("regions.tsv"))
            sets[static_cast<int>(regionNamed(name))].second.insert(code);
        return sets;
    }();
    return table;
}

const QHash<QString, QStringList>& englishNames() {
    static const QHash<QString, QStringList> table = [] {
        QHash<QString, QStringList> names;
        for (const auto& [code, name] : Tables::rows("english-names.tsv"))
            names[code].append(name);
        return names;
    }();
    return table;
}

} // namespace Airports
