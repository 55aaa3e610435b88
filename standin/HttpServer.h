// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QUrlQuery>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace standin {

struct HttpRequest {
    QByteArray method;                    ///< "GET" or "POST"
    QString host;                         ///< of the Host header, lower case, without port
    QString target;                       ///< path and query as sent
    QString path;                         ///< decoded, begins with "/"
    QUrlQuery query;                      ///< of the address
    QMap<QByteArray, QByteArray> cookies; ///< by name; the first of equal names
    QByteArray body;                      ///< as sent
};

struct HttpResponse {
    enum class Delivery {
        Whole,
        CutOff, ///< announces the whole body, sends half of it and closes
        Never   ///< keeps the connection open and says nothing until the client leaves
    };

    int status = 200;
    QList<std::pair<QByteArray, QByteArray>> headers{};
    QByteArray body{};
    Delivery delivery = Delivery::Whole;
    std::chrono::milliseconds delay{0}; ///< waits this long before it answers
    /// Called on the server's thread when the socket has taken the last byte of a whole answer.
    std::function<void(std::chrono::steady_clock::time_point)> sent{};
};

/// A small HTTP/1.1 server on the loopback addresses, with one thread of its own. A client that
/// stalls or breaks off costs its own connection only. Not for the open network.
class HttpServer {
public:
    /// Called on the server's thread, one request at a time. An exception becomes status 500.
    using Handler = std::function<HttpResponse(const HttpRequest&)>;

    struct Limits {
        std::chrono::milliseconds request{30'000}; ///< for a whole request, or idle before it
        std::chrono::milliseconds response{60'000};
        int connections = 512;      ///< further ones are closed at once
        quint32 header = 16 * 1024; ///< bytes; more is answered with status 431
        quint64 body = 64 * 1024;   ///< bytes; more is answered with status 413
    };

    explicit HttpServer(Handler handler);
    HttpServer(Handler handler, Limits limits);
    ~HttpServer();

    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Listens on 127.0.0.1 and, where the machine has it, on ::1; port 0 takes a free one.
    /// Returns the error, or nothing on success.
    [[nodiscard]] std::optional<QString> start(quint16 port);

    /// Closes every connection and joins the thread; may be called at any time.
    void stop();

    /// The port listened on, 0 when stopped.
    quint16 port() const;

private:
    struct Running;

    Handler m_handler;
    Limits m_limits;
    std::unique_ptr<Running> m_running;
};

} // namespace standin
