// SPDX-License-Identifier: MIT
#include "airports/Airports.h"

#include "airports/Folding.h"
#include "airports/Tables.h"

namespace Airports {

Region region(const QString& of) {
    const QString code = of.toUpper();
    for (const auto& [region, codes] : regionSets()) {
        if (codes.contains(code))
            return region;
    }
    return Region::other;
}

QString metro(const QString& code) {
    QString upper = code.toUpper();
    if (const auto area = Tables::metroAreas().constFind(upper);
        area != Tables::metroAreas().cend())
        return *area;
    if (const auto airport = byCode().constFind(upper); airport != byCode().cend())
        return airport->city;
    return upper;
}

bool cityConsistent(const QString& code, const QString& city) {
    const QString upper = code.toUpper();
    const auto airport = byCode().constFind(upper);
    if (city.isEmpty() || airport == byCode().cend() || city.toUpper() == upper)
        return true;

    const QString stored = folded(city);
    for (const QString& name : QStringList(airport->city) + englishNames().value(upper)) {
        const QString known = folded(name);
        if (stored.contains(known) || known.contains(stored))
            return true;
    }
    return false;
}

} // namespace Airports
