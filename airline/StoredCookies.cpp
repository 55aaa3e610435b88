// SPDX-License-Identifier: MIT
#include "airline/StoredCookies.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// 2001-01-01 00:00 UTC, in seconds since 1970.
constexpr double referenceDate = 978307200;
/// 9999-12-31, in the same.
constexpr double latestExpiry = 253402214400;

std::optional<WebCookie> decodeOne(const QJsonObject& object) {
    const QJsonValue secure = object[u"secure"];
    const QJsonValue expires = object[u"expires"];
    for (const QString& member : {u"name"_s, u"value"_s, u"domain"_s, u"path"_s}) {
        if (!object[member].isString())
            return std::nullopt;
    }
    if (!secure.isBool() || !(expires.isDouble() || expires.isUndefined() || expires.isNull()))
        return std::nullopt;
    WebCookie cookie;
    cookie.name = object[u"name"].toString();
    cookie.value = object[u"value"].toString();
    cookie.domain = object[u"domain"].toString();
    cookie.path = object[u"path"].toString();
    cookie.secure = secure.toBool();
    // No calendar goes further than the year 9999, whatever a damaged vault says.
    if (expires.isDouble())
        cookie.expires =
            instantFromSeconds(std::clamp(expires.toDouble() + referenceDate, 0.0, latestExpiry));
    return cookie;
}

} // namespace

namespace StoredCookies {

QByteArray encode(const QList<WebCookie>& cookies) {
    QJsonArray list;
    for (const WebCookie& cookie : cookies) {
        QJsonObject object{{u"name"_s, cookie.name},
                           {u"value"_s, cookie.value},
                           {u"domain"_s, cookie.domain},
                           {u"path"_s, cookie.path},
                           {u"secure"_s, cookie.secure}};
        if (cookie.expires)
            object.insert(u"expires"_s, secondsSince1970(*cookie.expires) - referenceDate);
        list.append(object);
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

std::optional<QList<WebCookie>> decode(const QByteArray& data) {
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (!document.isArray())
        return std::nullopt;
    QList<WebCookie> cookies;
    for (const auto& entry : document.array()) {
        const auto cookie = entry.isObject() ? decodeOne(entry.toObject()) : std::nullopt;
        if (!cookie)
            return std::nullopt;
        cookies.append(*cookie);
    }
    return cookies;
}

} // namespace StoredCookies
