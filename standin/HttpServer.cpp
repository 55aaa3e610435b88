// SPDX-License-Identifier: MIT
#include "standin/HttpServer.h"

#include <QUrl>

#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include <array>
#include <fcntl.h>
#include <thread>

namespace standin {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

QByteArray bytesOf(beast::string_view text) {
    return QByteArray(text.data(), qsizetype(text.size()));
}

QMap<QByteArray, QByteArray> cookiesOf(const QByteArray& header) {
    QMap<QByteArray, QByteArray> result;
    for (const QByteArray& part : header.split(';')) {
        const QByteArray pair = part.trimmed();
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0 && !result.contains(pair.first(equals)))
            result.insert(pair.first(equals), pair.sliced(equals + 1));
    }
    return result;
}

QString hostOf(const QByteArray& header) {
    const qsizetype colon = header.lastIndexOf(':');
    const bool hasPort = colon >= 0 && !header.sliced(colon).contains(']');
    return QString::fromLatin1(hasPort ? header.first(colon) : header).toLower();
}

HttpRequest requestOf(const http::request<http::string_body>& message) {
    HttpRequest request;
    request.method = bytesOf(message.method_string());
    request.host = hostOf(bytesOf(message[http::field::host]));
    request.target = QString::fromUtf8(bytesOf(message.target()));
    const qsizetype mark = request.target.indexOf(u'?');
    const QString path = mark < 0 ? request.target : request.target.first(mark);
    request.path = QUrl::fromPercentEncoding(path.toUtf8());
    if (mark >= 0)
        request.query.setQuery(request.target.sliced(mark + 1));
    request.cookies = cookiesOf(bytesOf(message[http::field::cookie]));
    request.body = QByteArray::fromStdString(message.body());
    return request;
}

HttpResponse plainText(int status, const char* text) {
    return {.status = status,
            .headers = {{"Content-Type", "text/plain; charset=utf-8"}},
            .body = QByteArray(text) + '\n'};
}

http::response_header<> headerOf(const HttpResponse& response) {
    http::response_header<> header;
    header.version(11);
    header.result(unsigned(response.status));
    for (const auto& [name, value] : response.headers)
        header.insert(beast::string_view(name.constData(), std::size_t(name.size())),
                      beast::string_view(value.constData(), std::size_t(value.size())));
    return header;
}

bool isProtocolError(const error_code& error) {
    return error &&
           error.category() == http::make_error_code(http::error::bad_version).category() &&
           error != http::error::end_of_stream && error != http::error::partial_message;
}

// Closing with unread input resets the connection, and the answer may be lost with it.
asio::awaitable<void> drain(beast::tcp_stream& stream) {
    error_code error;
    static_cast<void>(stream.socket().shutdown(tcp::socket::shutdown_send, error));
    stream.expires_after(std::chrono::seconds(1));
    std::array<char, 4096> scrap;
    while (!error)
        co_await stream.async_read_some(asio::buffer(scrap),
                                        asio::redirect_error(asio::use_awaitable, error));
}

} // namespace

struct HttpServer::Running {
    const Handler& handler;
    const Limits& limits;
    quint16 port = 0;
    int open = 0;
    asio::io_context context{1};
    std::thread thread;

    Running(const Handler& h, const Limits& l) : handler(h), limits(l) {}

    std::optional<QString> listen(quint16 wanted);
    asio::awaitable<void> acceptLoop(tcp::acceptor acceptor);
    asio::awaitable<void> serve(tcp::socket socket);
    asio::awaitable<bool> send(beast::tcp_stream& stream, const HttpResponse& response,
                               bool keepAlive);
    HttpResponse answer(const http::request<http::string_body>& message) const;
};

namespace {

/// Programs that are started from this one, such as a web view's processes, must not keep its
/// sockets open.
void keepFromChildren(int socket) {
    ::fcntl(socket, F_SETFD, FD_CLOEXEC);
}

tcp::acceptor bound(asio::io_context& context, const tcp::endpoint& endpoint, error_code& error) {
    tcp::acceptor acceptor(context);
    static_cast<void>(acceptor.open(endpoint.protocol(), error));
    if (!error) {
        keepFromChildren(acceptor.native_handle());
        static_cast<void>(acceptor.set_option(tcp::acceptor::reuse_address(true), error));
    }
    if (!error && endpoint.protocol() == tcp::v6())
        static_cast<void>(acceptor.set_option(asio::ip::v6_only(true), error));
    if (!error)
        static_cast<void>(acceptor.bind(endpoint, error));
    if (!error)
        static_cast<void>(acceptor.listen(tcp::acceptor::max_listen_connections, error));
    return acceptor;
}

} // namespace

std::optional<QString> HttpServer::Running::listen(quint16 wanted) {
    error_code error;
    // A free port of one protocol may be taken in the other; then another free one is tried.
    for (int attempt = 0; attempt < (wanted == 0 ? 20 : 1); ++attempt) {
        tcp::acceptor four = bound(context, {asio::ip::address_v4::loopback(), wanted}, error);
        if (error)
            break;
        port = four.local_endpoint().port();
        tcp::acceptor six = bound(context, {asio::ip::address_v6::loopback(), port}, error);
        if (error == asio::error::address_in_use)
            continue;
        // Any other failure means that this machine has no such address.
        if (!error)
            asio::co_spawn(context, acceptLoop(std::move(six)), asio::detached);
        asio::co_spawn(context, acceptLoop(std::move(four)), asio::detached);
        return std::nullopt;
    }
    return QStringLiteral("cannot listen on port %1: %2")
        .arg(wanted)
        .arg(QString::fromStdString(error.message()));
}

asio::awaitable<void> HttpServer::Running::acceptLoop(tcp::acceptor acceptor) {
    for (;;) {
        error_code error;
        tcp::socket socket =
            co_await acceptor.async_accept(asio::redirect_error(asio::use_awaitable, error));
        if (error) { // out of file descriptors, most likely
            asio::steady_timer pause(context, std::chrono::milliseconds(100));
            co_await pause.async_wait(asio::redirect_error(asio::use_awaitable, error));
        } else if (open < limits.connections) {
            asio::co_spawn(context, serve(std::move(socket)), asio::detached);
        }
    }
}

HttpResponse HttpServer::Running::answer(const http::request<http::string_body>& message) const {
    if (message.method() != http::verb::get && message.method() != http::verb::post)
        return plainText(405, "This site answers GET and POST only.");
    try {
        return handler(requestOf(message));
    } catch (const std::exception& failure) {
        return plainText(500, failure.what());
    }
}

asio::awaitable<void> HttpServer::Running::serve(tcp::socket socket) {
    struct Counted {
        int& count;
        explicit Counted(int& c) : count(c) { ++count; }
        ~Counted() { --count; }
    } counted(open);

    error_code error;
    keepFromChildren(socket.native_handle());
    static_cast<void>(socket.set_option(tcp::no_delay(true), error));
    beast::tcp_stream stream(std::move(socket));
    beast::flat_buffer buffer(limits.header + std::size_t(limits.body));
    for (;;) {
        http::request_parser<http::string_body> parser;
        parser.header_limit(limits.header);
        parser.body_limit(limits.body);
        stream.expires_after(limits.request);
        co_await http::async_read(stream, buffer, parser,
                                  asio::redirect_error(asio::use_awaitable, error));
        if (isProtocolError(error)) {
            const HttpResponse refusal = error == http::error::header_limit
                                             ? plainText(431, "The request's header is too large.")
                                         : error == http::error::body_limit
                                             ? plainText(413, "The request's body is too large.")
                                             : plainText(400, "This is not an HTTP request.");
            co_await send(stream, refusal, false);
            co_await drain(stream);
        }
        if (error)
            break;

        const HttpResponse response = answer(parser.get());
        if (response.delay.count() > 0) {
            asio::steady_timer pause(context, response.delay);
            co_await pause.async_wait(asio::redirect_error(asio::use_awaitable, error));
        }
        if (response.delivery == HttpResponse::Delivery::Never) {
            stream.expires_never();
            co_await stream.socket().async_wait(tcp::socket::wait_read,
                                                asio::redirect_error(asio::use_awaitable, error));
            break;
        }
        const bool more = co_await send(stream, response, parser.get().keep_alive());
        if (!more)
            break;
    }
    static_cast<void>(stream.socket().shutdown(tcp::socket::shutdown_send, error));
}

// Whether the connection goes on.
asio::awaitable<bool> HttpServer::Running::send(beast::tcp_stream& stream,
                                                const HttpResponse& response, bool keepAlive) {
    const bool cutOff = response.delivery == HttpResponse::Delivery::CutOff;
    error_code error;
    stream.expires_after(limits.response);
    http::response<http::empty_body> head(headerOf(response));
    head.content_length(std::uint64_t(response.body.size()));
    head.keep_alive(keepAlive && !cutOff);
    http::response_serializer<http::empty_body> serializer(head);
    co_await http::async_write_header(stream, serializer,
                                      asio::redirect_error(asio::use_awaitable, error));
    if (error)
        co_return false;
    const qsizetype size = cutOff ? response.body.size() / 2 : response.body.size();
    const asio::const_buffer body(response.body.constData(), std::size_t(size));
    co_await asio::async_write(stream, body, asio::redirect_error(asio::use_awaitable, error));
    if (!error && !cutOff && response.sent)
        response.sent(std::chrono::steady_clock::now());
    co_return !error && keepAlive && !cutOff;
}

HttpServer::HttpServer(Handler handler) : HttpServer(std::move(handler), Limits()) {}

HttpServer::HttpServer(Handler handler, Limits limits)
    : m_handler(std::move(handler)), m_limits(limits) {}

HttpServer::~HttpServer() {
    stop();
}

std::optional<QString> HttpServer::start(quint16 port) {
    if (m_running)
        return QStringLiteral("already listening on port %1").arg(m_running->port);
    auto running = std::make_unique<Running>(m_handler, m_limits);
    if (auto error = running->listen(port))
        return error;
    running->thread = std::thread([context = &running->context] { context->run(); });
    m_running = std::move(running);
    return std::nullopt;
}

void HttpServer::stop() {
    if (!m_running)
        return;
    // The waiting coroutines, and with them the sockets, are destroyed with the context.
    m_running->context.stop();
    m_running->thread.join();
    m_running.reset();
}

quint16 HttpServer::port() const {
    return m_running ? m_running->port : 0;
}

} // namespace standin
