// SPDX-License-Identifier: MIT
#include "community/Bodies.h"

#include <boost/url/parse.hpp>
#include <boost/url/parse_query.hpp>

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace community {

namespace {

namespace dom = simdjson::dom;
namespace urls = boost::urls;

// A find is the third level; what is deeper is passed over, but not without end.
constexpr std::size_t deepest = 8;

enum class Kind { Text, Integer, Seconds };

struct Field {
    std::string_view name;
    Kind kind;
    std::int64_t least = 0; // of texts: bytes
    std::int64_t most = 0;
};

// In the order they are sent out in.
enum FieldIndex { Key, Cabin, Route, TravelDate = 12, BookingUrl, FoundAt };
constexpr std::array<Field, 15> fields{{{"key", Kind::Text, 1, 120},
                                        {"cabin", Kind::Text, 1, 10},
                                        {"route", Kind::Text, 7, 7},
                                        {"fromCity", Kind::Text, 0, 80},
                                        {"toCity", Kind::Text, 0, 80},
                                        {"depart", Kind::Text, 0, 40},
                                        {"arrive", Kind::Text, 0, 40},
                                        {"stopsText", Kind::Text, 0, 120},
                                        {"flight", Kind::Text, 0, 80},
                                        {"durationMin", Kind::Integer, 0, 10'000},
                                        {"seats", Kind::Integer, 1, 999},
                                        {"points", Kind::Integer, 0, 10'000'000},
                                        {"travelDate", Kind::Text, 10, 10},
                                        {"bookingUrl", Kind::Text, 0, 600},
                                        {"foundAt", Kind::Seconds}}};
static_assert(fields[TravelDate].name == "travelDate" && fields[FoundAt].name == "foundAt");

using Values = std::array<dom::element, fields.size()>;

bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

bool isCabin(std::string_view text) {
    return text == "economy" || text == "premeco" || text == "business" || text == "first";
}

bool hasControls(std::string_view text) {
    return std::any_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
}

std::optional<std::chrono::sys_days> dateOf(std::string_view text) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    const auto number = [&](std::size_t from, std::size_t size, auto& into) {
        const char* const end = text.data() + from + size;
        return std::from_chars(text.data() + from, end, into).ptr == end;
    };
    if (text.size() != 10 || text[4] != '-' || text[7] != '-' || !number(0, 4, year) ||
        !number(5, 2, month) || !number(8, 2, day))
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

// "2027-03-01-OSL-BKK-SK1467,TG955": its route.
std::optional<std::string_view> routeOfKey(std::string_view key) {
    const bool isKey = key.size() > 19 && std::int64_t(key.size()) <= fields[Key].most &&
                       dateOf(key.substr(0, 10)) && key[10] == '-' && isRoute(key.substr(11, 7)) &&
                       key[18] == '-' && !hasControls(key);
    return isKey ? std::optional(key.substr(11, 7)) : std::nullopt;
}

bool isBooking(std::string_view text, bool mayBeLocal) {
    if (text.empty())
        return true;
    const auto url = urls::parse_uri(text);
    if (!url || url->has_userinfo() || url->encoded_host().empty())
        return false;
    const std::string_view host = url->encoded_host();
    const bool isLocal = host == "127.0.0.1" || host == "localhost" || host.ends_with(".localhost");
    return url->scheme_id() == urls::scheme::https ||
           (mayBeLocal && isLocal && url->scheme_id() == urls::scheme::http);
}

std::string quoted(std::string_view text) {
    std::string result(1, '"');
    return result.append(text).append(1, '"');
}

void appendText(std::string& json, std::string_view text) {
    json += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\')
            json += '\\';
        json += c;
    }
    json += '"';
}

void appendSeconds(std::string& json, double seconds) {
    std::array<char, 64> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), seconds,
                                   std::chars_format::fixed);
    json.append(digits.data(), end.ptr);
}

// Collects the members by field; what is none of the fields is passed over.
template<typename FieldList, typename ValueList>
std::optional<Fault> collect(const dom::object& object, const FieldList& wanted,
                             ValueList& values) {
    std::bitset<fields.size()> seen;
    for (const auto [name, value] : object) {
        const auto field = std::find_if(wanted.begin(), wanted.end(),
                                        [&](const Field& f) { return f.name == name; });
        if (field == wanted.end())
            continue;
        const std::size_t index = std::size_t(field - wanted.begin());
        if (seen[index])
            return Fault{quoted(name) + " occurs twice."};
        seen.set(index);
        values[index] = value;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i)
        if (!seen[i])
            return Fault{quoted(wanted[i].name) + " is missing."};
    return std::nullopt;
}

std::optional<Fault> wrongText(const Field& field, const dom::element& value) {
    std::string_view text;
    if (value.get(text))
        return Fault{quoted(field.name) + " must be a text."};
    if (std::int64_t(text.size()) < field.least || std::int64_t(text.size()) > field.most)
        return Fault{quoted(field.name) + " must have " + std::to_string(field.least) + " to " +
                     std::to_string(field.most) + " bytes."};
    if (hasControls(text))
        return Fault{quoted(field.name) + " must not have control characters."};
    return std::nullopt;
}

std::optional<Fault> wrongValue(const Field& field, const dom::element& value) {
    if (field.kind == Kind::Text)
        return wrongText(field, value);
    if (field.kind == Kind::Integer) {
        std::int64_t number = 0;
        if (value.get(number) || number < field.least || number > field.most)
            return Fault{quoted(field.name) + " must be a whole number from " +
                         std::to_string(field.least) + " to " + std::to_string(field.most) + '.'};
        return std::nullopt;
    }
    double seconds = 0;
    if (value.get(seconds) || !(seconds >= 0 && seconds < 1e11))
        return Fault{quoted(field.name) + " must be seconds since 1970."};
    return std::nullopt;
}

std::string_view textOf(const dom::element& value) {
    return value.get_string().value_unsafe();
}

// What the fields must be beyond their types, and to one another.
std::optional<Fault> wrongFind(const Values& values, Time now, bool takesLocalBookings) {
    const std::string_view key = textOf(values[Key]);
    const std::string_view date = textOf(values[TravelDate]);
    if (!isCabin(textOf(values[Cabin])))
        return Fault{R"("cabin" must be economy, premeco, business or first.)"};
    if (!isRoute(textOf(values[Route])))
        return Fault{R"("route" must be two codes of three upper-case letters, as in OSL-BKK.)"};
    const auto day = dateOf(date);
    const auto today = std::chrono::floor<std::chrono::days>(now);
    if (!day || *day < today - std::chrono::days(1) || *day > today + std::chrono::days(400))
        return Fault{R"("travelDate" must be a date from yesterday to 400 days ahead.)"};
    if (routeOfKey(key) != textOf(values[Route]) || !key.starts_with(date))
        return Fault{R"("key" must be the travel date, the route and the flights, joined by "-".)"};
    if (!isBooking(textOf(values[BookingUrl]), takesLocalBookings))
        return Fault{R"("bookingUrl" must be an https address, or empty.)"};
    return std::nullopt;
}

Change changeOf(const Values& values, Time now) {
    Change change{std::string(textOf(values[Key])) + '#' + std::string(textOf(values[Cabin])),
                  std::string(textOf(values[Route])),
                  {}};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        change.json += i == 0 ? '{' : ',';
        appendText(change.json, fields[i].name);
        change.json += ':';
        if (fields[i].kind == Kind::Text)
            appendText(change.json, textOf(values[i]));
        else if (fields[i].kind == Kind::Integer)
            change.json += std::to_string(values[i].get_int64().value_unsafe());
        else
            appendSeconds(change.json,
                          std::min(values[i].get_double().value_unsafe(),
                                   std::chrono::duration<double>(now.time_since_epoch()).count()));
    }
    change.json += '}';
    return change;
}

std::variant<dom::object, Fault> objectOf(dom::parser& parser, std::string_view body) {
    // Also makes the parser hold to the depth.
    const std::size_t wanted = std::max<std::size_t>(body.size(), 16 * 1024);
    if (wanted > parser.capacity() && parser.allocate(wanted, deepest) != simdjson::SUCCESS)
        return Fault{"There is no memory for the body."};
    dom::element root;
    if (const auto error = parser.parse(body.data(), body.size()).get(root))
        return Fault{error == simdjson::DEPTH_ERROR ? "The body is nested too deeply."
                                                    : "The body is not valid JSON."};
    dom::object object;
    if (root.get(object))
        return Fault{"The body must be a JSON object."};
    return object;
}

} // namespace

bool isRoute(std::string_view text) {
    return text.size() == 7 && text[3] == '-' &&
           std::all_of(text.begin(), text.begin() + 3, isUpper) &&
           std::all_of(text.begin() + 4, text.end(), isUpper);
}

std::variant<std::vector<Change>, Fault> Bodies::hits(std::string_view body, Time now) {
    static constexpr std::array<Field, 1> wanted{{{"hits", Kind::Text}}};
    const auto root = objectOf(m_parser, body);
    if (const auto* fault = std::get_if<Fault>(&root))
        return *fault;
    std::array<dom::element, 1> member;
    if (auto fault = collect(std::get<dom::object>(root), wanted, member))
        return *fault;
    dom::array list;
    if (member[0].get(list) || list.size() > mostFinds)
        return Fault{R"("hits" must be a list of at most 200 finds.)"};

    std::vector<Change> changes;
    changes.reserve(list.size());
    for (const dom::element entry : list) {
        dom::object find;
        Values values;
        std::optional<Fault> fault;
        if (entry.get(find))
            fault = Fault{"A find must be a JSON object."};
        else
            fault = collect(find, fields, values);
        for (std::size_t i = 0; i < fields.size() && !fault; ++i)
            fault = wrongValue(fields[i], values[i]);
        if (!fault)
            fault = wrongFind(values, now, m_takesLocalBookings);
        if (fault)
            return Fault{"hits[" + std::to_string(changes.size()) + "]: " + fault->sentence};
        changes.push_back(changeOf(values, now));
    }
    return changes;
}

std::variant<Change, Fault> Bodies::soldOut(std::string_view body) {
    static constexpr std::array wanted{fields[Key], fields[Cabin]};
    const auto root = objectOf(m_parser, body);
    if (const auto* fault = std::get_if<Fault>(&root))
        return *fault;
    std::array<dom::element, wanted.size()> values;
    if (auto fault = collect(std::get<dom::object>(root), wanted, values))
        return *fault;
    for (std::size_t i = 0; i < wanted.size(); ++i)
        if (auto fault = wrongText(wanted[i], values[i]))
            return *fault;
    const std::string_view key = textOf(values[Key]);
    const auto route = routeOfKey(key);
    if (!route)
        return Fault{R"("key" must be the travel date, the route and the flights, joined by "-".)"};
    if (!isCabin(textOf(values[Cabin])))
        return Fault{R"("cabin" must be economy, premeco, business or first.)"};
    return Change{
        std::string(key) + '#' + std::string(textOf(values[Cabin])), std::string(*route), {}};
}

std::vector<std::string> routesOf(std::string_view query, std::size_t most) {
    std::vector<std::string> routes;
    const auto parameters = urls::parse_query(query);
    if (!parameters)
        return routes;
    const auto found = parameters->find("routes");
    if (found == parameters->end())
        return routes;
    const std::string list = (*found).value.decode();
    for (std::size_t from = 0; from < list.size() && routes.size() < most;) {
        const std::size_t comma = std::min(list.find(',', from), list.size());
        const std::string_view route = std::string_view(list).substr(from, comma - from);
        if (isRoute(route) && std::find(routes.begin(), routes.end(), route) == routes.end())
            routes.emplace_back(route);
        from = comma + 1;
    }
    return routes;
}

} // namespace community
