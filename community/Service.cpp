// SPDX-License-Identifier: MIT
#include "community/Service.h"

#include "community/Api.h"
#include "community/Connection.h"
#include "community/Connections.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include <fcntl.h>
#include <thread>
#include <utility>

namespace community {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

// Of answers that are kept ready.
constexpr std::size_t mostKeptBytes = 8 * 1024 * 1024;
constexpr std::chrono::milliseconds tickInterval{100};

std::vector<asio::ip::address> addressesOf(const std::vector<std::string>& texts) {
    std::vector<asio::ip::address> result;
    result.reserve(texts.size());
    for (const std::string& text : texts)
        result.push_back(asio::ip::make_address(text));
    return result;
}

/// Programs that are started from this one, such as a web view's processes, must not keep its
/// sockets open.
void keepFromChildren(int socket) {
    ::fcntl(socket, F_SETFD, FD_CLOEXEC);
}

} // namespace

struct Service::Running {
    asio::io_context context{1};
    tcp::acceptor acceptor{context};
    asio::steady_timer ticking{context};
    asio::steady_timer pause{context};
    StoreThread store;
    Api api;
    Connections connections;
    std::thread thread;

    explicit Running(const Options& options)
        : store(
              options.store(options.limits.finds), options.clock,
              [this](std::function<void()> call) { asio::post(context, std::move(call)); },
              options.log)
        , api(store, options.clock, RateLimiter(options.rateLimit),
              Bodies(options.takesLocalBookings), mostKeptBytes)
        , connections(api, options.limits, options.clock, addressesOf(options.trustedProxies)) {}

    ~Running() {
        context.stop();
        if (thread.joinable())
            thread.join();
        connections.closeAll();
    }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    void listen(const Options& options);
    void accept();
    void tick();
};

void Service::Running::listen(const Options& options) {
    const tcp::endpoint endpoint(asio::ip::make_address(options.listen), options.port);
    acceptor.open(endpoint.protocol());
    keepFromChildren(acceptor.native_handle());
    acceptor.set_option(tcp::acceptor::reuse_address(true));
    acceptor.bind(endpoint);
    acceptor.listen();
    accept();
    tick();
    thread = std::thread([this] { context.run(); });
}

void Service::Running::accept() {
    acceptor.async_accept(
        context.get_executor(), [this](error_code error, Connection::Socket socket) {
            if (error == asio::error::operation_aborted)
                return;
            if (error) {
                // No descriptor left, most likely; there will be when a connection ends.
                pause.expires_after(std::chrono::milliseconds(100));
                pause.async_wait([this](error_code stopped) {
                    if (!stopped)
                        accept();
                });
                return;
            }
            const tcp::endpoint peer = socket.remote_endpoint(error);
            if (!error) {
                keepFromChildren(socket.native_handle());
                static_cast<void>(socket.set_option(tcp::no_delay(true), error));
                const auto connection =
                    std::make_shared<Connection>(std::move(socket), peer.address(), connections);
                if (connections.add(connection))
                    connection->start();
            }
            accept();
        });
}

void Service::Running::tick() {
    ticking.expires_after(tickInterval);
    ticking.async_wait([this](error_code stopped) {
        if (stopped)
            return;
        connections.tick();
        tick();
    });
}

Service::Service(Options options) : m_options(std::move(options)) {}

Service::~Service() = default;

std::optional<std::string> Service::start() {
    m_running.reset();
    try {
        auto running = std::make_unique<Running>(m_options);
        running->listen(m_options);
        m_running = std::move(running);
        return std::nullopt;
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

void Service::stop() {
    m_running.reset();
}

std::uint16_t Service::port() const {
    return m_running ? m_running->acceptor.local_endpoint().port() : 0;
}

std::string Service::address() const {
    if (!m_running)
        return {};
    const tcp::endpoint endpoint = m_running->acceptor.local_endpoint();
    const std::string host = endpoint.address().to_string();
    return "http://" + (endpoint.address().is_v6() ? '[' + host + ']' : host) + ':' +
           std::to_string(endpoint.port());
}

} // namespace community
