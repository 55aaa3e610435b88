// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace Airports {

/// A part of the world under which journeys are grouped. Comparing two regions compares their
/// order on the hits page.
enum class Region { usa, latam, asia, middleEast, africa, oceania, europe, other };

/// Every region, in order; an element's index is its raw value.
inline constexpr std::array allRegions{Region::usa,        Region::latam,  Region::asia,
                                       Region::middleEast, Region::africa, Region::oceania,
                                       Region::europe,     Region::other};

/// The Norwegian section title, led by an emoji.
QString label(Region region);

/// The region with this raw value (0 to 7); absent for any other number.
std::optional<Region> regionFromRaw(int raw);

} // namespace Airports
