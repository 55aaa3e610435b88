// SPDX-License-Identifier: MIT
#pragma once

#include "Http.h"
#include "community/Service.h"
#include "tests/support/RedisServer.h"

#include <QJsonObject>
#include <QTemporaryDir>

#include <atomic>
#include <memory>

/// The clock stands until it is moved. Moves while services run.
class World {
public:
    explicit World(bool isRedis);

    /// A running service on the world's store and clock, without a limit of requests.
    std::unique_ptr<community::Service> service() const;
    community::Options options() const;
    /// Of the SQLite store.
    std::string file() const;
    static Http http(const community::Service& service) { return {service.port()}; }

    void pass(std::chrono::milliseconds time) { *m_now += time.count(); }
    community::Time now() const { return community::Time(std::chrono::milliseconds(*m_now)); }

    QTemporaryDir folder;
    std::unique_ptr<RedisServer> redis; ///< null for SQLite

    /// 2027-01-15 12:00 UTC, where every clock starts.
    static constexpr std::int64_t start = 1'800'014'400'000;
    /// A find of that day, valid in every field.
    static QJsonObject find(const QString& route = QStringLiteral("OSL-BKK"),
                            const QString& flight = QStringLiteral("SK1467,TG955"),
                            const QString& cabin = QStringLiteral("business"));

private:
    std::shared_ptr<std::atomic<std::int64_t>> m_now;
};
