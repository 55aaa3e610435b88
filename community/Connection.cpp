// SPDX-License-Identifier: MIT
#include "community/Connection.h"

#include "community/Connections.h"
#include "community/Sender.h"

#include <boost/asio/write.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/rfc7230.hpp>
#include <boost/beast/http/status.hpp>

#include <algorithm>
#include <utility>

namespace community {

namespace asio = boost::asio;
namespace http = boost::beast::http;

namespace {

// Of a buffer that a kept connection may hold while nothing is asked of it.
constexpr std::size_t restingBuffer = 4096;
constexpr std::chrono::milliseconds drainLimit{1000};

Connection::Instant now() {
    return std::chrono::steady_clock::now();
}

bool isProtocolError(const boost::system::error_code& error) {
    return error.category() == http::make_error_code(http::error::bad_version).category() &&
           error != http::error::end_of_stream && error != http::error::partial_message;
}

} // namespace

Connection::Connection(Socket socket, asio::ip::address peer, Connections& all)
    : m_socket(std::move(socket))
    , m_peer(std::move(peer))
    , m_all(all)
    , m_buffer(all.limits().header + restingBuffer) {}

void Connection::close() {
    if (!m_isOpen)
        return;
    m_isOpen = false;
    Error ignored;
    static_cast<void>(m_socket.close(ignored));
    m_all.remove(shared_from_this());
}

void Connection::endWait() {
    if (m_phase != Phase::Reading) {
        close();
        return;
    }
    m_isTimedOut = true;
    m_deadline = Instant::max();
    Error ignored;
    static_cast<void>(m_socket.cancel(ignored));
}

void Connection::enter(Phase phase, Instant deadline) {
    m_phase = phase;
    m_since = now();
    m_deadline = deadline;
    m_isTimedOut = false;
}

void Connection::awaitRequest() {
    m_parser.reset();
    m_request = {};
    if (m_buffer.size() > 0) {
        beginRequest();
        return;
    }
    if (m_buffer.capacity() > restingBuffer)
        m_buffer.shrink_to_fit();
    enter(Phase::Idle, now() + m_all.limits().idle);
    readMore();
}

void Connection::beginRequest() {
    m_requestEnd = now() + m_all.limits().request;
    enter(Phase::Reading, m_requestEnd);
    readHead();
}

void Connection::readMore() {
    m_socket.async_read_some(m_buffer.prepare(restingBuffer / 2),
                             [self = shared_from_this()](Error error, std::size_t bytes) {
                                 if (self->isOver(error)) {
                                     self->refuseBroken(error);
                                     return;
                                 }
                                 self->m_buffer.commit(bytes);
                                 self->m_phase == Phase::Idle ? self->beginRequest()
                                                              : self->readHead();
                             });
}

void Connection::readHead() {
    const std::string_view bytes(static_cast<const char*>(m_buffer.data().data()), m_buffer.size());
    const std::size_t limit = m_all.limits().header;
    if (bytes.front() < 'A' || bytes.front() > 'Z')
        refuseBroken(http::error::bad_method);
    else if (bytes.substr(0, limit).find("\r\n\r\n") != std::string_view::npos)
        takeHead();
    else if (bytes.size() >= limit)
        refuseBroken(http::error::header_limit);
    else
        readMore();
}

void Connection::takeHead() {
    m_parser.emplace();
    m_parser->header_limit(m_all.limits().header);
    m_parser->body_limit(m_all.limits().body);
    Error error;
    m_buffer.consume(m_parser->put(m_buffer.data(), error));
    if (error) {
        refuseBroken(error);
        return;
    }
    auto& message = m_parser->get();
    const bool isAwaited = !message[http::field::expect].empty();
    m_staysOpen = message.keep_alive() && message.version() == 11;
    m_request.method = message.method_string();
    m_request.target = message.target();
    m_request.contentType = message[http::field::content_type];
    m_request.hasBody = m_parser->chunked() || m_parser->content_length().value_or(0) > 0;
    // A balancer may add a line of its own after the client's.
    std::string forwardedFor;
    const auto lines = message.equal_range("X-Forwarded-For");
    for (auto line = lines.first; line != lines.second; ++line)
        forwardedFor.append(forwardedFor.empty() ? "" : ",").append(line->value());
    m_request.sender = senderOf(m_peer, forwardedFor, m_all.trustedProxies());
    message.clear();
    welcome(isAwaited);
}

void Connection::welcome(bool isAwaited) {
    if (auto refused = m_all.api().refused(m_request)) {
        // The rest of a refused request is not wanted, so nothing can follow it.
        write(std::move(*refused), m_staysOpen && !m_request.hasBody);
        return;
    }
    const bool isPost = m_request.method == "POST";
    if (isPost && !m_parser->content_length()) {
        write(refusal(411, "The request must say how long its body is."), false);
        return;
    }
    const std::size_t wanted = std::min(isPost ? std::size_t(*m_parser->content_length())
                                               : Api::mostAnswerBytes(m_request),
                                        m_all.room().most());
    m_phase = Phase::Answering;
    m_all.room().take(wanted, [self = shared_from_this(), wanted, isAwaited] {
        self->m_taken = wanted;
        self->proceed(isAwaited);
    });
}

void Connection::proceed(bool isAwaited) {
    static constexpr std::string_view goOn = "HTTP/1.1 100 Continue\r\n\r\n";
    if (m_request.method == "GET") {
        answer();
        return;
    }
    enter(Phase::Reading, m_requestEnd);
    if (!isAwaited)
        readBody();
    else
        asio::async_write(m_socket, asio::buffer(goOn),
                          [self = shared_from_this()](Error error, std::size_t) {
                              self->isOver(error) ? self->refuseBroken(error) : self->readBody();
                          });
}

void Connection::readBody() {
    http::async_read(m_socket, m_buffer, *m_parser,
                     [self = shared_from_this()](Error error, std::size_t) {
                         self->isOver(error) ? self->refuseBroken(error) : self->answer();
                     });
}

void Connection::answer() {
    m_phase = Phase::Answering;
    m_all.api().answer(m_request, m_parser->get().body(),
                       [self = shared_from_this()](Response response) {
                           self->write(std::move(response), self->m_staysOpen);
                       });
}

void Connection::refuseBroken(Error error) {
    if (m_isTimedOut)
        write(refusal(408, "The request took too long."), false);
    else if (error == http::error::header_limit)
        write(refusal(431, "The request's header is too large."), false);
    else if (error == http::error::body_limit)
        write(refusal(413, "The request's body is too large."), false);
    else if (isProtocolError(error))
        write(refusal(400, "This is not an HTTP request."), false);
    else {
        m_parser.reset();
        keepTaken(0);
        close();
    }
}

void Connection::write(Response response, bool staysOpen) {
    m_parser.reset();
    if (!m_isOpen) {
        keepTaken(0);
        return;
    }
    m_body = std::move(response.body);
    m_head = "HTTP/1.1 ";
    m_head += std::to_string(response.status);
    m_head += ' ';
    m_head += http::obsolete_reason(http::int_to_status(response.status));
    m_head += "\r\n";
    m_head += m_all.dateLine();
    m_head += response.headers;
    if (m_body) {
        m_head += "Content-Type: application/json\r\nContent-Length: ";
        m_head += std::to_string(m_body->size());
        m_head += "\r\n";
    }
    m_head += staysOpen ? "\r\n" : "Connection: close\r\n\r\n";

    // The answer to HEAD says how long a body would be, and has none.
    const bool hasBody = m_body && m_request.method != "HEAD";
    const std::array<asio::const_buffer, 2> parts{
        asio::buffer(m_head), hasBody ? asio::buffer(*m_body) : asio::const_buffer()};
    enter(Phase::Writing, now() + m_all.limits().response);
    asio::async_write(m_socket, parts,
                      [self = shared_from_this(), staysOpen](Error error, std::size_t) {
                          self->m_body.reset();
                          self->keepTaken(0);
                          if (error || !self->m_isOpen)
                              self->close();
                          else if (staysOpen)
                              self->awaitRequest();
                          else
                              self->drain();
                      });
    keepTaken(m_body ? m_body->size() : 0);
}

// Closing with unread input resets the connection, and the answer may be lost with it.
void Connection::drain() {
    Error ignored;
    static_cast<void>(m_socket.shutdown(Socket::shutdown_send, ignored));
    enter(Phase::Draining, now() + drainLimit);
    readScrap();
}

void Connection::readScrap() {
    m_socket.async_read_some(asio::buffer(m_scrap),
                             [self = shared_from_this()](Error error, std::size_t) {
                                 error ? self->close() : self->readScrap();
                             });
}

// Gives back what is more than this.
void Connection::keepTaken(std::size_t bytes) {
    if (m_taken > bytes)
        m_all.room().giveBack(std::exchange(m_taken, bytes) - bytes);
}

} // namespace community
