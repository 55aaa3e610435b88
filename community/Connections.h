// SPDX-License-Identifier: MIT
#pragma once

#include "community/Room.h"
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

/// All open connections, and what they share. Where there is no place or no memory left, whoever
/// waits longest for its own client has to go: that is who stalls, never who is being served.
class Connections {
public:
    Connections(Api& api, const Limits& limits, Clock clock,
                std::vector<boost::asio::ip::address> trustedProxies);

    Api& api() { return m_api; }
    const Limits& limits() const { return m_limits; }
    const std::vector<boost::asio::ip::address>& trustedProxies() const { return m_trustedProxies; }
    /// The header line "Date: …\r\n".
    const std::string& dateLine() const { return m_dateLine; }

    /// False when there is no place for it.
    bool add(const std::shared_ptr<Connection>& connection);
    void remove(const std::shared_ptr<Connection>& connection);
    /// The memory that they share.
    Room& room() { return m_room; }

    /// To be called ten times a second: ends what takes too long.
    void tick();
    void closeAll();

private:
    std::size_t closeLongestWaiting(bool withMemory);

    Api& m_api;
    Limits m_limits;
    Clock m_clock;
    std::vector<boost::asio::ip::address> m_trustedProxies;
    std::unordered_set<std::shared_ptr<Connection>> m_open;
    Room m_room;
    std::string m_dateLine;
};

} // namespace community
