// SPDX-License-Identifier: MIT
#include "airline/OfferParser.h"

#include "airline/SAS.h"
#include "core/DateFmt.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

using namespace Qt::StringLiterals;
namespace dom = simdjson::dom;

namespace {

// Readers of one value, each absent when the value has another type.

std::optional<dom::object> object(dom::element value) {
    dom::object result;
    return value.get(result) ? std::nullopt : std::optional(result);
}

std::optional<std::string_view> chars(dom::element value) {
    std::string_view result;
    return value.get(result) ? std::nullopt : std::optional(result);
}

QString toText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::optional<QString> text(dom::element value) {
    const auto utf8 = chars(value);
    return utf8 ? std::optional(toText(*utf8)) : std::nullopt;
}

std::optional<int> integer(dom::element value) {
    constexpr auto low = std::numeric_limits<int>::min();
    constexpr auto high = std::numeric_limits<int>::max();
    switch (value.type()) {
    case dom::element_type::INT64:
        return static_cast<int>(std::clamp<int64_t>(value.get_int64().value_unsafe(), low, high));
    case dom::element_type::UINT64:
        return high;
    case dom::element_type::DOUBLE: {
        const double number = value.get_double().value_unsafe();
        if (number != std::trunc(number))
            return std::nullopt;
        return static_cast<int>(std::clamp<double>(number, low, high));
    }
    default:
        return std::nullopt;
    }
}

std::optional<dom::element> member(dom::object owner, std::string_view name) {
    dom::element value;
    return owner.at_key(name).get(value) ? std::nullopt : std::optional(value);
}

/// `value.name`, when value is an object and the member a text.
std::optional<QString> textOf(dom::element value, std::string_view name) {
    const auto owner = object(value);
    const auto found = owner ? member(*owner, name) : std::nullopt;
    return found ? text(*found) : std::nullopt;
}

std::optional<QString> textOf(dom::object owner, std::string_view outer, std::string_view inner) {
    const auto found = member(owner, outer);
    return found ? textOf(*found, inner) : std::nullopt;
}

std::optional<int> integerOf(dom::object owner, std::string_view name) {
    const auto found = member(owner, name);
    return found ? integer(*found) : std::nullopt;
}

std::string_view charsOf(dom::object owner, std::string_view name) {
    const auto found = member(owner, name);
    return (found ? chars(*found) : std::nullopt).value_or(std::string_view());
}

/// Calls `visit` with every entry of a list of objects; a list with any other entry counts as
/// missing.
template<typename Visit>
void eachEntry(const std::optional<dom::element>& value, Visit visit) {
    dom::array list;
    if (!value || value->get(list) || std::any_of(list.begin(), list.end(), [](dom::element entry) {
            return !entry.is_object();
        }))
        return;
    for (const dom::element entry : list)
        visit(entry.get_object().value_unsafe());
}

/// Calls `visit` with key and value of every member of `value` that is an object itself.
template<typename Visit>
void eachObjectMember(const std::optional<dom::element>& value, Visit visit) {
    const auto owner = value ? object(*value) : std::nullopt;
    if (!owner)
        return;
    for (const auto [key, entry] : *owner) {
        if (const auto fields = object(entry))
            visit(key, *fields);
    }
}

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool equalsIgnoringCase(std::string_view text, std::string_view upperCase) {
    return std::equal(text.begin(), text.end(), upperCase.begin(), upperCase.end(),
                      [](char a, char b) { return upper(a) == b; });
}

bool containsIgnoringCase(std::string_view text, std::string_view upperCase) {
    return std::search(text.begin(), text.end(), upperCase.begin(), upperCase.end(),
                       [](char a, char b) { return upper(a) == b; }) != text.end();
}

/// The airline's own cabin names, in upper case, with the cabin each stands for.
using CabinMap = std::array<std::pair<std::string_view, Cabin>, 4>;
constexpr CabinMap cabinMap{{{"ECONOMY", Cabin::economy},
                             {"PREMIUM", Cabin::premeco},
                             {"BUSINESS", Cabin::business},
                             {"FIRST", Cabin::first}}};
constexpr CabinMap awardCabinMap{{{"ECONOMY", Cabin::economy},
                                  {"PREMIUM_ECONOMY", Cabin::premeco},
                                  {"BUSINESS", Cabin::business},
                                  {"FIRST", Cabin::first}}};

std::optional<Cabin> cabinNamed(std::string_view name, const CabinMap& map) {
    for (const auto& [known, cabin] : map) {
        if (equalsIgnoringCase(name, known))
            return cabin;
    }
    return std::nullopt;
}

void keepLowest(std::optional<int>& lowest, int points) {
    if (points >= 1)
        lowest = std::min(lowest.value_or(points), points);
}

/// What both kinds of responses say of a flight under the same keys.
struct Itinerary {
    static constexpr qsizetype lengthOfDate = 10;

    std::optional<QString> localDepart;
    std::optional<QString> localArrive;
    std::optional<QString> startGmt;
    std::optional<QString> endGmt;
    std::optional<QString> connection;
    std::optional<int> stops;
    std::optional<QString> originCode;
    std::optional<QString> destinationCode;
    std::optional<QString> originCity;
    std::optional<QString> destinationCity;
    int segments = 0;
    QString flight;
    QStringList stopCodes;

    /// Takes the member if it is one of the shared ones.
    bool take(std::string_view key, dom::element value) {
        if (key == "connectionDuration")
            connection = text(value);
        else if (key == "stops")
            stops = integer(value);
        else if (key == "origin")
            originCode = textOf(value, "code");
        else if (key == "destination")
            destinationCode = textOf(value, "code");
        else if (key == "originCity")
            originCity = textOf(value, "name");
        else if (key == "destinationCity")
            destinationCity = textOf(value, "name");
        else if (key == "segments")
            takeSegments(value);
        else
            return false;
        return true;
    }

    void takeSegments(dom::element value) {
        segments = 0;
        flight.clear();
        stopCodes.clear();
        QString arrival;
        eachEntry(value, [&](dom::object segment) {
            // Where a segment arrives is a stop only when another one follows.
            if (!arrival.isEmpty())
                stopCodes.append(arrival);
            arrival = textOf(segment, "arrivalAirport", "code").value_or(QString());
            if (segments++ > 0)
                flight += u',';
            flight += textOf(segment, "marketingCarrier", "code").value_or(QString());
            flight += flightNumber(member(segment, "flightNumber"));
        });
    }

    /// A number or a text; nothing for anything else.
    static QString flightNumber(const std::optional<dom::element>& value) {
        if (!value)
            return {};
        if (value->is_int64())
            return QString::number(value->get_int64().value_unsafe());
        if (value->is_number())
            return QString::number(value->get_double().value_unsafe(), 'g', 17);
        return text(*value).value_or(QString());
    }

    /// Fills in all of `fare` but its seats and prices and where it can be booked.
    void describe(Fare& fare, const Route& leg) const {
        const auto code = [](const std::optional<QString>& own, const QString& ofLeg) {
            const QString trimmed = own.value_or(QString()).trimmed().toUpper();
            return trimmed.isEmpty() ? ofLeg.toUpper() : trimmed;
        };
        const QString departs = localDepart.value_or(QString());
        fare.key.date = DateFmt::dateFromIso(QStringView(departs).left(lengthOfDate));
        fare.key.route = {code(originCode, leg.origin), code(destinationCode, leg.destination)};
        fare.key.flights = flight;
        fare.fromCity = originCity.value_or(fare.key.route.origin);
        fare.toCity = destinationCity.value_or(fare.key.route.destination);
        fare.localDepart = LocalTime::fromAirline(departs);
        fare.localArrive = LocalTime::fromAirline(localArrive.value_or(QString()));
        fare.stops = {stops.value_or(0), stopCodes};
        fare.durationMinutes = SAS::durationMinutes(startGmt, endGmt, connection);
    }
};

/// One product of the ordinary flow: a price with its seats, bought with money or with points.
void addProduct(dom::object product, int& bestSeats, std::optional<int>& lowest) {
    if (!containsIgnoringCase(charsOf(product, "productName"), "BONUS"))
        return;
    int seats = 0;
    eachEntry(member(product, "fares"), [&seats](dom::object fare) {
        seats = std::max(seats, integerOf(fare, "avlSeats").value_or(0));
    });
    if (seats < 1)
        return;
    bestSeats = std::max(bestSeats, seats);

    const auto price = member(product, "price");
    const auto prices = price ? object(*price) : std::nullopt;
    if (!prices)
        return;
    auto points = integerOf(*prices, "points");
    if (points.value_or(0) <= 0)
        points = integerOf(*prices, "pointsAfterDiscount");
    keepLowest(lowest, points.value_or(0));
}

void addCabins(dom::element value, Fare& fare) {
    eachObjectMember(value, [&fare](std::string_view name, dom::object families) {
        const auto cabin = cabinNamed(name, cabinMap);
        if (!cabin)
            return;
        int bestSeats = 0;
        std::optional<int> lowest;
        for (const auto family : families) {
            const auto fields = object(family.value);
            eachObjectMember(fields ? member(*fields, "products") : std::nullopt,
                             [&](std::string_view, dom::object product) {
                                 addProduct(product, bestSeats, lowest);
                             });
        }
        fare.availability[*cabin] = bestSeats;
        if (lowest)
            fare.saverPoints[*cabin] = lowest;
    });
}

/// One cabin entry of the award flow; `seatsKey` is where its seat count stands.
void mergeAwardCabin(dom::object entry, std::string_view seatsKey, Fare& fare) {
    const auto cabin = cabinNamed(charsOf(entry, "cabin"), awardCabinMap);
    if (!cabin)
        return;

    int seats = integerOf(entry, seatsKey).value_or(0);
    if (seats == 0) {
        constexpr int untold = std::numeric_limits<int>::max();
        seats = untold;
        eachEntry(member(entry, "fares"), [&seats](dom::object offer) {
            seats = std::min(seats, integerOf(offer, "avlSeats").value_or(seats));
        });
        if (seats == untold)
            seats = 0;
    }
    if (seats >= 1)
        fare.availability[*cabin] = std::max(fare.availability[*cabin].value_or(0), seats);

    eachObjectMember(member(entry, "price"), [&](std::string_view, dom::object amounts) {
        const auto amount = integerOf(amounts, "amount");
        keepLowest(fare.saverPoints[*cabin],
                   (amount ? amount : integerOf(amounts, "points")).value_or(0));
    });
}

Fare fareWithoutSeats() {
    Fare fare;
    for (const Cabin cabin : allCabins)
        fare.availability[cabin] = 0;
    return fare;
}

Fare ordinaryFare(dom::object flight, const Site& site, const Route& leg) {
    Itinerary itinerary;
    Fare fare = fareWithoutSeats();
    for (const auto [key, value] : flight) {
        if (itinerary.take(key, value))
            continue;
        if (key == "startTimeInLocal")
            itinerary.localDepart = text(value);
        else if (key == "endTimeInLocal")
            itinerary.localArrive = text(value);
        else if (key == "startTimeInGmt")
            itinerary.startGmt = text(value);
        else if (key == "endTimeInGmt")
            itinerary.endGmt = text(value);
        else if (key == "cabins")
            addCabins(value, fare);
    }
    itinerary.describe(fare, leg);
    fare.bookingURL = SAS::bookingURL(site, fare.key.route, fare.key.date);
    return fare;
}

std::optional<Fare> awardFare(dom::object flight, const Site& site, const Route& leg) {
    Itinerary itinerary;
    std::optional<QString> startTime;
    std::optional<QString> endTime;
    std::optional<dom::element> lowestFares;
    std::optional<dom::element> cabins;
    for (const auto [key, value] : flight) {
        if (itinerary.take(key, value))
            continue;
        if (key == "isSoldOut") {
            if (value.is_bool() && value.get_bool().value_unsafe())
                return std::nullopt;
        } else if (key == "startDateTimeInLocal")
            itinerary.localDepart = text(value);
        else if (key == "startTimeInLocal")
            startTime = text(value);
        else if (key == "endDateTimeInLocal")
            itinerary.localArrive = text(value);
        else if (key == "endTimeInLocal")
            endTime = text(value);
        else if (key == "startDateTimeInGmt")
            itinerary.startGmt = text(value);
        else if (key == "endDateTimeInGmt")
            itinerary.endGmt = text(value);
        else if (key == "lowestFares")
            lowestFares = value;
        else if (key == "cabins")
            cabins = value;
    }
    if (!itinerary.localDepart)
        itinerary.localDepart = startTime;
    if (!itinerary.localArrive)
        itinerary.localArrive = endTime;
    if (!itinerary.stops)
        itinerary.stops = std::max(itinerary.segments - 1, 0);

    Fare fare = fareWithoutSeats();
    eachEntry(lowestFares,
              [&fare](dom::object entry) { mergeAwardCabin(entry, "avlSeats", fare); });
    eachEntry(cabins,
              [&fare](dom::object entry) { mergeAwardCabin(entry, "availableSeats", fare); });
    itinerary.describe(fare, leg);
    fare.bookingURL = SAS::awardURL(site, fare.key.route, fare.key.date);
    return fare;
}

} // namespace

struct OfferParser::Buffers {
    dom::parser parser{static_cast<size_t>(largestBody)};

    /// Absent when the body cannot be read as an object.
    std::optional<dom::object> root(const QByteArray& body) {
        dom::object root;
        if (body.size() > largestBody)
            return std::nullopt;
        const qsizetype start = body.startsWith("\xEF\xBB\xBF") ? 3 : 0;
        if (parser.parse(body.constData() + start, static_cast<size_t>(body.size() - start))
                .get(root))
            return std::nullopt;
        return root;
    }
};

OfferParser::OfferParser(Site site)
    : m_site(std::move(site)), m_buffers(std::make_unique<Buffers>()) {}

OfferParser::~OfferParser() = default;

std::optional<QList<Fare>> OfferParser::parseOffers(const QByteArray& body, const Route& leg) {
    const auto root = m_buffers->root(body);
    if (!root)
        return std::nullopt;
    const auto flights = member(*root, "outboundFlights");
    if (!flights || !object(*flights))
        return std::nullopt;
    QList<Fare> fares;
    eachObjectMember(flights, [&](std::string_view, dom::object flight) {
        fares.append(ordinaryFare(flight, m_site, leg));
    });
    return fares;
}

std::optional<QList<Fare>> OfferParser::parseAwardOffers(const QByteArray& body, const Route& leg) {
    const auto root = m_buffers->root(body);
    if (!root)
        return std::nullopt;
    QList<Fare> fares;
    dom::array flights;
    const auto list = member(*root, "outboundFlights");
    if (!list || list->get(flights))
        return std::nullopt;
    for (const dom::element entry : flights) {
        const auto flight = object(entry);
        if (!flight)
            continue;
        if (auto fare = awardFare(*flight, m_site, leg))
            fares.append(std::move(*fare));
    }
    return fares;
}

std::optional<QList<Fare>> OfferParser::parse(const QByteArray& body, const Leg& leg) {
    return leg.flow == Flow::award ? parseAwardOffers(body, leg.route)
                                   : parseOffers(body, leg.route);
}
