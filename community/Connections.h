// SPDX-License-Identifier: MIT
#pragma once

#include "community/Service.h"

#include <boost/asio/ip/address.hpp>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace community {

class Api;
class Connection;

/// All open connections, and the room that they share. Where there is no room left, whoever waits
/// longest for its own client has to go: that is who stalls, never who is being served.
class Connections {
public:
    Connections(Api& api, const Limits& limits, Clock clock,
                std::vector<boost::asio::ip::address> trustedProxies);

    Api& api() { return m_api; }
    const Limits& limits() const { return m_limits; }
    const std::vector<boost::asio::ip::address>& trustedProxies() const { return m_trustedProxies; }
    /// The header line "Date: …\r\n".
    const std::string& dateLine() const { return m_dateLine; }

    /// False when there is no room for it.
    bool add(const std::shared_ptr<Connection>& connection);
    void remove(const std::shared_ptr<Connection>& connection);
    /// Room for `bytes` of a body or an answer of this connection, until it is given back.
    bool reserve(const Connection& connection, std::size_t bytes);
    void release(std::size_t bytes) { m_reserved -= bytes; }

    /// To be called a few times a second: ends what takes too long.
    void tick();
    void closeAll();

private:
    enum class Reason { Place, Memory };
    bool closeLongestWaiting(Reason reason, const Connection* except);

    Api& m_api;
    Limits m_limits;
    Clock m_clock;
    std::vector<boost::asio::ip::address> m_trustedProxies;
    std::unordered_set<std::shared_ptr<Connection>> m_open;
    std::size_t m_reserved = 0;
    std::string m_dateLine;
};

} // namespace community
