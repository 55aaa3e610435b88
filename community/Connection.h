// SPDX-License-Identifier: MIT
#pragma once

#include "community/Api.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace community {

class Connections;

/// One client's connection: reads a request, has it answered, writes the answer, and so on. Its
/// waits are ended by Connections. Lives as long as an operation of it is on its way.
///
/// A header is kept as it came until it is whole, and given up once it was understood: the parser
/// takes many times the room of the header's bytes, and lets it grow without end when it comes in
/// pieces.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    using Executor = boost::asio::io_context::executor_type;
    using Socket = boost::asio::basic_stream_socket<boost::asio::ip::tcp, Executor>;
    using Instant = std::chrono::steady_clock::time_point;

    Connection(Socket socket, boost::asio::ip::address peer, Connections& all);

    void start() { awaitRequest(); }
    void close();

    /// False while it is the service that the client waits for.
    bool isWaitingForClient() const { return m_phase != Phase::Answering; }
    Instant waitingSince() const { return m_since; }
    Instant deadline() const { return m_deadline; }
    /// Bytes of the common room. A closed connection gives them back when its last operation ends,
    /// which still holds the memory.
    std::size_t taken() const { return m_taken; }
    /// The client took too long: an unfinished request gets its answer, all else is closed.
    void endWait();

private:
    enum class Phase { Idle, Reading, Answering, Writing, Draining };
    using Error = boost::system::error_code;

    void enter(Phase phase, Instant deadline);
    void awaitRequest();
    void beginRequest();
    void readHead();
    void readMore();
    void takeHead();
    void welcome(bool isAwaited);
    void proceed(bool isAwaited);
    void readBody();
    void answer();
    /// A wait may also have ended after the bytes came, and before they were noticed.
    bool isOver(Error error) const { return error || m_isTimedOut; }
    void refuseBroken(Error error);
    void write(Response response, bool staysOpen);
    void drain();
    void readScrap();
    void keepTaken(std::size_t bytes);

    Socket m_socket;
    boost::asio::ip::address m_peer;
    Connections& m_all;
    Phase m_phase = Phase::Idle;
    Instant m_since;
    Instant m_deadline;
    Instant m_requestEnd;
    bool m_isOpen = true;
    bool m_isTimedOut = false;
    std::size_t m_taken = 0;
    boost::beast::flat_buffer m_buffer;
    std::optional<boost::beast::http::request_parser<boost::beast::http::string_body>> m_parser;
    Request m_request;
    bool m_staysOpen = false; // as far as the client wishes
    std::string m_head;
    std::shared_ptr<const std::string> m_body;
    std::array<char, 1024> m_scrap;
};

} // namespace community
