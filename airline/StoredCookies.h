// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CookieStore.h"

#include <QByteArray>
#include <QList>

#include <optional>

/// That there is a cookie, without what it holds.
struct KnownCookie {
    QString name;
    QString domain;
    /// Absent for a session cookie.
    std::optional<Instant> expires;
    bool operator==(const KnownCookie&) const = default;
};

/// The saved form of the session's cookies: a JSON list of objects with "name", "value", "domain",
/// "path", "secure", and "expires" in seconds since 2001-01-01 00:00 UTC unless it is a session
/// cookie.
namespace StoredCookies {

QByteArray encode(const QList<WebCookie>& cookies);
/// Absent when the data is no such list, or any of its entries lacks a member or has one of
/// another type.
std::optional<QList<WebCookie>> decode(const QByteArray& data);

/// The same without "value", "path" and "secure", for what is remembered where anybody may read.
QByteArray encodeKnown(const QList<KnownCookie>& cookies);
/// Absent under the same conditions.
std::optional<QList<KnownCookie>> decodeKnown(const QByteArray& data);

} // namespace StoredCookies
