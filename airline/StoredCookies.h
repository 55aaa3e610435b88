// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CookieStore.h"

#include <QByteArray>
#include <QList>

#include <optional>

/// The saved form of the session's cookies: a JSON list of objects with "name", "value", "domain",
/// "path", "secure", and "expires" in seconds since 2001-01-01 00:00 UTC unless it is a session
/// cookie.
namespace StoredCookies {

QByteArray encode(const QList<WebCookie>& cookies);
/// Absent when the data is no such list, or any of its entries lacks a member or has one of
/// another type.
std::optional<QList<WebCookie>> decode(const QByteArray& data);

} // namespace StoredCookies
