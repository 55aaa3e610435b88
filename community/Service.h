// SPDX-License-Identifier: MIT
#pragma once

#include "community/SqliteStore.h"
#include "community/Time.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace community {

/// What one client, or all of them together, may take.
struct Limits {
    std::size_t connections = 512; ///< above it the one that waits longest for its client is closed
    std::chrono::milliseconds request{10'000};  ///< for a whole request, from its first byte
    std::chrono::milliseconds idle{30'000};     ///< for the next request of a kept connection
    std::chrono::milliseconds response{10'000}; ///< for the client to take the whole answer
    std::uint32_t header = 16 * 1024;           ///< bytes
    std::size_t body = 256 * 1024;              ///< bytes
    std::size_t memory = 20 * 1024 * 1024;      ///< bytes of all bodies and answers on their way
    std::size_t finds = 200'000;                ///< that the store is to keep
};

struct Options {
    std::string listen = "127.0.0.1"; ///< an IP address of this machine
    std::uint16_t port = 0;           ///< 0 takes a free one
    /// Called at each start.
    StoreMaker store = inSqlite(":memory:");
    Clock clock = systemTime;
    /// What each sender may ask for in the long run, in requests a second; a minute's worth of them
    /// at once. 0 is no limit.
    double rateLimit = 2;
    /// IP addresses of balancers whose X-Forwarded-For is believed.
    std::vector<std::string> trustedProxies;
    /// Takes booking addresses of this very machine too, without https: for the stand-in site.
    bool takesLocalBookings = false;
    Limits limits;
    /// Called from any thread with one line when the store fails and when it is back.
    std::function<void(const std::string&)> log;
};

/// The community service: HTTP on one thread of its own, its store on another.
///
/// Embeds in any program: start it, seed it with POST /v1/hits, and destroy it.
class Service {
public:
    explicit Service(Options options);
    ~Service();

    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /// Makes the store, listens and serves. Returns the error, or nothing on success.
    [[nodiscard]] std::optional<std::string> start();

    /// Closes every connection and joins the threads. What was answered is stored.
    void stop();

    /// 0 when stopped.
    std::uint16_t port() const;
    /// Such as "http://127.0.0.1:8737"; empty when stopped.
    std::string address() const;

private:
    struct Running;

    Options m_options;
    std::unique_ptr<Running> m_running;
};

} // namespace community
