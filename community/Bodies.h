// SPDX-License-Identifier: MIT
#pragma once

#include "community/Store.h"

#include <simdjson.h>

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace community {

/// Why a body is refused, in one English sentence.
struct Fault {
    std::string sentence;
};

/// Finds taken in one request at most.
inline constexpr std::size_t mostFinds = 200;

/// Reads what clients post. Every member is checked, and only what was checked is passed on.
class Bodies {
public:
    explicit Bodies(bool takesLocalBookings) : m_takesLocalBookings(takesLocalBookings) {}

    /// {"hits": [find…]}, as changes that put each find. A `foundAt` in the future becomes `now`.
    /// One faulty find refuses them all.
    std::variant<std::vector<Change>, Fault> hits(std::string_view body, Time now);
    /// {"key", "cabin"}, as a change that drops the find.
    std::variant<Change, Fault> soldOut(std::string_view body);

private:
    simdjson::dom::parser m_parser;
    bool m_takesLocalBookings;
};

/// "AAA-BBB", upper case.
bool isRoute(std::string_view text);
/// The valid routes of a query such as routes=OSL-BKK,BGO-NYC, without repetition, the first
/// `most` of them. Others, which no find can have, are passed over.
std::vector<std::string> routesOf(std::string_view query, std::size_t most);

} // namespace community
