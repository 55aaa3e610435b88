// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QCoroTask>
#include <QList>
#include <QString>

#include <optional>

/// One cookie as a browser keeps it.
struct WebCookie {
    QString name;
    QString value;
    /// As the store gives it; a leading "." means that sub-domains get it too.
    QString domain;
    QString path;
    /// Absent for a session cookie.
    std::optional<Instant> expires;
    /// Only sent over HTTPS.
    bool secure = false;

    bool operator==(const WebCookie&) const = default;
};

/// The cookies of a web view. Every operation ends within some seconds whatever the engine does.
class CookieStore {
public:
    virtual ~CookieStore() = default;

    /// All cookies; absent when the engine does not answer.
    virtual QCoro::Task<std::optional<QList<WebCookie>>> all() = 0;
    /// Adds a cookie, or replaces the one of the same name, domain and path. False when the engine
    /// refuses it.
    virtual QCoro::Task<bool> set(WebCookie cookie) = 0;
    /// Deletes the cookie of this name, domain and path, if there is one.
    virtual QCoro::Task<> remove(WebCookie cookie) = 0;
};
