// SPDX-License-Identifier: MIT
#include "standin/Places.h"

#include <QtMath>

#include <array>

namespace standin {
namespace {

constexpr std::array places{
    Place{"OSL", u"Oslo", "Europe/Oslo", 60.19, 11.10, false},
    Place{"BGO", u"Bergen", "Europe/Oslo", 60.29, 5.22, false},
    Place{"TRD", u"Trondheim", "Europe/Oslo", 63.46, 10.92, false},
    Place{"SVG", u"Stavanger", "Europe/Oslo", 58.88, 5.64, false},
    Place{"TOS", u"Tromsø", "Europe/Oslo", 69.68, 18.92, false},
    Place{"BOO", u"Bodø", "Europe/Oslo", 67.27, 14.37, false},
    Place{"CPH", u"København", "Europe/Copenhagen", 55.62, 12.66, false},
    Place{"AAL", u"Aalborg", "Europe/Copenhagen", 57.09, 9.85, false},
    Place{"ARN", u"Stockholm", "Europe/Stockholm", 59.65, 17.92, false},
    Place{"GOT", u"Göteborg", "Europe/Stockholm", 57.66, 12.28, false},
    Place{"HEL", u"Helsinki", "Europe/Helsinki", 60.32, 24.96, false},
    Place{"KEF", u"Reykjavik", "Atlantic/Reykjavik", 63.99, -22.61, false},
    Place{"LHR", u"London", "Europe/London", 51.47, -0.45, false},
    Place{"EDI", u"Edinburgh", "Europe/London", 55.95, -3.37, false},
    Place{"DUB", u"Dublin", "Europe/Dublin", 53.42, -6.27, false},
    Place{"AMS", u"Amsterdam", "Europe/Amsterdam", 52.31, 4.76, false},
    Place{"CDG", u"Paris", "Europe/Paris", 49.01, 2.55, false},
    Place{"NCE", u"Nice", "Europe/Paris", 43.66, 7.22, false},
    Place{"FRA", u"Frankfurt", "Europe/Berlin", 50.03, 8.56, false},
    Place{"BER", u"Berlin", "Europe/Berlin", 52.36, 13.51, false},
    Place{"ZRH", u"Zürich", "Europe/Zurich", 47.46, 8.55, false},
    Place{"FCO", u"Roma", "Europe/Rome", 41.80, 12.25, false},
    Place{"ATH", u"Athen", "Europe/Athens", 37.94, 23.94, false},
    Place{"AGP", u"Malaga", "Europe/Madrid", 36.67, -4.50, false},
    Place{"ALC", u"Alicante", "Europe/Madrid", 38.28, -0.56, false},
    Place{"LIS", u"Lisboa", "Europe/Lisbon", 38.77, -9.13, false},
    Place{"EWR", u"New York", "America/New_York", 40.69, -74.17, true},
    Place{"JFK", u"New York", "America/New_York", 40.64, -73.78, true},
    Place{"BOS", u"Boston", "America/New_York", 42.36, -71.01, true},
    Place{"MIA", u"Miami", "America/New_York", 25.79, -80.29, true},
    Place{"ORD", u"Chicago", "America/Chicago", 41.98, -87.90, true},
    Place{"LAX", u"Los Angeles", "America/Los_Angeles", 33.94, -118.41, true},
    Place{"SFO", u"San Francisco", "America/Los_Angeles", 37.62, -122.38, true},
    Place{"BKK", u"Bangkok", "Asia/Bangkok", 13.69, 100.75, true},
    Place{"SIN", u"Singapore", "Asia/Singapore", 1.36, 103.99, true},
    Place{"KUL", u"Kuala Lumpur", "Asia/Kuala_Lumpur", 2.75, 101.71, true},
    Place{"SGN", u"Ho Chi Minh-byen", "Asia/Ho_Chi_Minh", 10.82, 106.65, true},
    Place{"HKG", u"Hongkong", "Asia/Hong_Kong", 22.31, 113.91, true},
    Place{"PVG", u"Shanghai", "Asia/Shanghai", 31.14, 121.81, true},
    Place{"ICN", u"Seoul", "Asia/Seoul", 37.46, 126.44, true},
    Place{"HND", u"Tokyo", "Asia/Tokyo", 35.55, 139.78, true},
    Place{"NRT", u"Tokyo", "Asia/Tokyo", 35.76, 140.39, true},
    Place{"DEL", u"Delhi", "Asia/Kolkata", 28.57, 77.10, true},
};

} // namespace

const Place* findPlace(const QString& code) {
    for (const Place& place : places) {
        if (code == QLatin1String(place.code))
            return &place;
    }
    return nullptr;
}

QString cityOf(const QString& code) {
    const Place* place = findPlace(code);
    return place ? QString::fromUtf16(place->city) : QString();
}

double kilometresBetween(const QString& from, const QString& to) {
    const Place* a = findPlace(from);
    const Place* b = findPlace(to);
    if (!a || !b)
        return 1500;
    const double lat1 = qDegreesToRadians(a->latitude);
    const double lat2 = qDegreesToRadians(b->latitude);
    const double sinLat = qSin((lat2 - lat1) / 2);
    const double sinLon = qSin(qDegreesToRadians(b->longitude - a->longitude) / 2);
    const double h = sinLat * sinLat + qCos(lat1) * qCos(lat2) * sinLon * sinLon;
    constexpr double earthDiameter = 2 * 6371.0;
    return earthDiameter * qAsin(qSqrt(h));
}

} // namespace standin
