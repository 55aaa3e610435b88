// SPDX-License-Identifier: MIT
#include "World.h"
#include "community/RedisStore.h"
#include "community/SqliteStore.h"

#include <QTest>

World::World(bool isRedis)
    : redis(isRedis ? std::make_unique<RedisServer>() : nullptr)
    , m_now(std::make_shared<std::atomic<std::int64_t>>(start)) {}

std::string World::file() const {
    return folder.filePath(QStringLiteral("a/b.sqlite")).toStdString();
}

community::Options World::options() const {
    community::Options options;
    options.store = redis ? community::inRedis(redis->url()) : community::inSqlite(file());
    options.clock = [now = m_now] { return community::Time(std::chrono::milliseconds(*now)); };
    options.rateLimit = 0;
    return options;
}

std::unique_ptr<community::Service> World::service() const {
    auto service = std::make_unique<community::Service>(options());
    if (const auto error = service->start())
        QTest::qFail(error->c_str(), __FILE__, __LINE__);
    return service;
}

QJsonObject World::find(const QString& route, const QString& flight, const QString& cabin) {
    const QString date = QStringLiteral("2027-03-01");
    return {{QStringLiteral("key"), date + u'-' + route + u'-' + flight},
            {QStringLiteral("cabin"), cabin},
            {QStringLiteral("route"), route},
            {QStringLiteral("fromCity"), QStringLiteral("Tromsø")},
            {QStringLiteral("toCity"), QStringLiteral("\"New\" \\York")},
            {QStringLiteral("depart"), QStringLiteral("01.03 09:05")},
            {QStringLiteral("arrive"), QStringLiteral("02.03 06:10")},
            {QStringLiteral("stopsText"), QStringLiteral("1 stopp (CPH)")},
            {QStringLiteral("flight"), flight},
            {QStringLiteral("durationMin"), 725},
            {QStringLiteral("seats"), 2},
            {QStringLiteral("points"), 75'000},
            {QStringLiteral("travelDate"), date},
            {QStringLiteral("bookingUrl"), QStringLiteral("https://www.sas.no/book?a=b#c")},
            {QStringLiteral("foundAt"), start / 1000 - 60.125}};
}
