// SPDX-License-Identifier: MIT
#include "app/EngineAge.h"

#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace {

constexpr int knownSeries = 50;
constexpr int monthsBetweenSeries = 6;
constexpr int monthsOfUpdates = 2 * monthsBetweenSeries + 1;

} // namespace

namespace EngineAge {

std::optional<QString> warning(const QString& version, QDate today) {
    const auto number = QVersionNumber::fromString(version);
    if (number.segmentCount() < 2 || number.majorVersion() != 2)
        return std::nullopt;
    const int series = number.minorVersion() - number.minorVersion() % 2;
    const QDate released =
        QDate(2025, 9, 1).addMonths((series - knownSeries) / 2 * monthsBetweenSeries);
    if (today < released.addMonths(monthsOfUpdates))
        return std::nullopt;
    return u"Nettleserdelen (WebKitGTK %1) er for gammel til å være trygg: den får ikke lenger "
           u"sikkerhetsoppdateringer. Oppdater systemet ditt. Hjelper ikke det, trenger du en "
           u"nyere "
           u"utgave av systemet (Debian 13 eller nyere), før du logger inn med din egen konto."_s
               .arg(version);
}

} // namespace EngineAge
