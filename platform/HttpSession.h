// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>

#include <chrono>
#include <optional>

struct HttpRequest {
    enum class Method { get, post };

    Method method = Method::get;
    /// An absolute http or https address.
    QUrl url;
    /// Sent with `post` only, as JSON.
    QByteArray body;
    /// For the whole exchange, from the connection to the last byte of the answer.
    std::chrono::milliseconds timeout{10'000};
    /// An answer with a longer body is none.
    qint64 largestBody = 1'000'000;
};

struct HttpResponse {
    int status = 0;
    QByteArray body;

    bool operator==(const HttpResponse&) const = default;
};

/// Requests to servers that nobody vouches for: bounded in time and in memory, and never led to
/// another scheme.
class HttpSession {
public:
    virtual ~HttpSession() = default;

    /// Absent when there was no whole answer: no connection, a bad certificate, out of time, too
    /// long, cut off, too many redirects or one to another scheme.
    virtual QCoro::Task<std::optional<HttpResponse>> send(HttpRequest request) = 0;
};
