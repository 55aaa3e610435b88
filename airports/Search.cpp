// SPDX-License-Identifier: MIT
#include "airports/Airports.h"
#include "airports/Folding.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace Airports {
namespace {

/// Stands between two cities in the index; no name holds it.
constexpr char16_t separator = u'\0';

/// The catalogue folded. All cities lie in one text, so that a query is looked for once in the
/// whole catalogue, not once per airport.
struct Index {
    struct Row {
        std::u16string code;
        size_t cityBegin;
        size_t cityEnd;
    };
    std::vector<Row> rows; // as in all()
    std::u16string cities;
    qsizetype longest = 0; // code or city

    Index() {
        rows.reserve(all().size());
        for (const Airport& airport : all()) {
            const QString city = folded(airport.city);
            const size_t begin = cities.size();
            cities += city.toStdU16String();
            rows.push_back({folded(airport.code).toStdU16String(), begin, cities.size()});
            cities += separator;
            longest = std::max({longest, city.size(), airport.code.size()});
        }
    }
};

const Index& index() {
    static const Index built;
    return built;
}

} // namespace

QList<Airport> search(const QString& query, int limit) {
    const Index& in = index();
    const std::u16string wanted = foldedUpTo(query, in.longest).toStdU16String();
    if (wanted.size() < 2 || static_cast<qsizetype>(wanted.size()) > in.longest || limit <= 0 ||
        wanted.find(separator) != std::u16string::npos)
        return {};

    QList<Airport> exactCode, cityPrefix, codePrefix, cityContains;
    size_t hit = in.cities.find(wanted);
    for (size_t i = 0; i < in.rows.size(); ++i) {
        const Index::Row& row = in.rows[i];
        QList<Airport>* bucket = nullptr;
        if (row.code == wanted)
            bucket = &exactCode;
        else if (hit == row.cityBegin)
            bucket = &cityPrefix;
        else if (row.code.starts_with(wanted))
            bucket = &codePrefix;
        else if (hit < row.cityEnd)
            bucket = &cityContains;
        if (bucket && bucket->size() < limit)
            bucket->append(all()[static_cast<qsizetype>(i)]);
        if (hit < row.cityEnd)
            hit = in.cities.find(wanted, row.cityEnd);
    }
    // No code is in the catalogue twice and each airport is in one bucket: no duplicates to drop.
    return (exactCode + cityPrefix + codePrefix + cityContains).mid(0, limit);
}

} // namespace Airports
