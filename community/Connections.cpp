// SPDX-License-Identifier: MIT
#include "community/Connections.h"

#include "community/Connection.h"

#include <array>
#include <ctime>

namespace community {

namespace {

// Memory is given back soon by most who have some, so nobody is sent away for it at once.
constexpr std::chrono::milliseconds patience{50};

} // namespace

Connections::Connections(Api& api, const Limits& limits, Clock clock,
                         std::vector<boost::asio::ip::address> trustedProxies)
    : m_api(api)
    , m_limits(limits)
    , m_clock(std::move(clock))
    , m_trustedProxies(std::move(trustedProxies))
    , m_room(limits.memory, [this] { return closeLongestWaiting(true); }) {
    tick();
}

bool Connections::add(const std::shared_ptr<Connection>& connection) {
    if (m_open.size() >= m_limits.connections)
        closeLongestWaiting(false);
    if (m_open.size() >= m_limits.connections)
        return false;
    m_open.insert(connection);
    return true;
}

void Connections::remove(const std::shared_ptr<Connection>& connection) {
    m_open.erase(connection);
}

// Returns the memory that it will give back; without anybody to close, 0.
std::size_t Connections::closeLongestWaiting(bool withMemory) {
    const auto latest = std::chrono::steady_clock::now() - patience;
    std::shared_ptr<Connection> longest;
    for (const auto& connection : m_open)
        if (connection->isWaitingForClient() &&
            (!withMemory || (connection->taken() > 0 && connection->waitingSince() <= latest)) &&
            (!longest || connection->waitingSince() < longest->waitingSince()))
            longest = connection;
    if (!longest)
        return 0;
    longest->close();
    return longest->taken();
}

void Connections::tick() {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(m_clock());
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 64> line{};
    line[std::strftime(line.data(), line.size(), "Date: %a, %d %b %Y %T GMT\r\n", &parts)] = 0;
    m_dateLine = line.data();

    const auto now = std::chrono::steady_clock::now();
    const std::vector<std::shared_ptr<Connection>> open(m_open.begin(), m_open.end());
    for (const auto& connection : open)
        if (connection->isWaitingForClient() && connection->deadline() <= now)
            connection->endWait();
    m_room.serve();
}

void Connections::closeAll() {
    m_room.close();
    while (!m_open.empty())
        std::shared_ptr<Connection>(*m_open.begin())->close();
}

} // namespace community
