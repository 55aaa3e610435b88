// SPDX-License-Identifier: MIT
#pragma once

#include "Http.h"
#include "community/Service.h"

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <atomic>
#include <memory>

/// A Redis of its own on a free port, which keeps nothing.
class RedisServer {
public:
    RedisServer();
    ~RedisServer() { stop(); }

    quint16 port() const { return m_port; }
    std::string url() const { return "redis://127.0.0.1:" + std::to_string(m_port); }
    void start(); ///< also again, on the same port
    void stop();
    /// What it answers to an inline command such as "DBSIZE".
    QByteArray ask(const QByteArray& command) const;

private:
    QTemporaryDir m_folder;
    quint16 m_port = 0;
    QProcess m_process;
};

/// The clock stands until it is moved. Moves while services run.
class World {
public:
    explicit World(bool isRedis);

    /// A running service on the world's store and clock, without a limit of requests.
    std::unique_ptr<community::Service> service() const;
    community::Options options() const;
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
