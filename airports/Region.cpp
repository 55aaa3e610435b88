// SPDX-License-Identifier: MIT
#include "airports/Region.h"

namespace Airports {

QString label(Region region) {
    switch (region) {
    case Region::usa:
        return QStringLiteral("🇺🇸 USA & Canada");
    case Region::latam:
        return QStringLiteral("🌴 Latin-Amerika & Karibia");
    case Region::asia:
        return QStringLiteral("🌏 Asia");
    case Region::middleEast:
        return QStringLiteral("🕌 Midtøsten");
    case Region::africa:
        return QStringLiteral("🌍 Afrika & Indiske hav");
    case Region::oceania:
        return QStringLiteral("🦘 Oseania");
    case Region::europe:
        return QStringLiteral("🇪🇺 Europa");
    case Region::other:
        break;
    }
    return QStringLiteral("🌐 Annet");
}

std::optional<Region> regionFromRaw(int raw) {
    if (raw < 0 || raw >= static_cast<int>(allRegions.size()))
        return std::nullopt;
    return static_cast<Region>(raw);
}

} // namespace Airports
