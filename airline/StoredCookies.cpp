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

QJsonObject encodeOne(const KnownCookie& cookie) {
    QJsonObject object{{u"name"_s, cookie.name}, {u"domain"_s, cookie.domain}};
    if (cookie.expires)
        object.insert(u"expires"_s, secondsSince1970(*cookie.expires) - referenceDate);
    return object;
}

std::optional<KnownCookie> decodeOneKnown(const QJsonObject& object) {
    const QJsonValue name = object[u"name"];
    const QJsonValue domain = object[u"domain"];
    const QJsonValue expires = object[u"expires"];
    if (!name.isString() || !domain.isString() ||
        !(expires.isDouble() || expires.isUndefined() || expires.isNull()))
        return std::nullopt;
    KnownCookie cookie{name.toString(), domain.toString(), std::nullopt};
    // No calendar goes further than the year 9999, whatever a damaged vault says.
    if (expires.isDouble())
        cookie.expires =
            instantFromSeconds(std::clamp(expires.toDouble() + referenceDate, 0.0, latestExpiry));
    return cookie;
}

std::optional<WebCookie> decodeOne(const QJsonObject& object) {
    const auto known = decodeOneKnown(object);
    const QJsonValue value = object[u"value"];
    const QJsonValue path = object[u"path"];
    const QJsonValue secure = object[u"secure"];
    if (!known || !value.isString() || !path.isString() || !secure.isBool())
        return std::nullopt;
    return WebCookie{known->name,     value.toString(), known->domain,
                     path.toString(), known->expires,   secure.toBool()};
}

/// What `one` makes of each entry of the list; absent when it makes nothing of any.
template<typename Cookie>
std::optional<QList<Cookie>> decodeAll(const QByteArray& data,
                                       std::optional<Cookie> (*one)(const QJsonObject&)) {
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (!document.isArray())
        return std::nullopt;
    QList<Cookie> cookies;
    for (const auto& entry : document.array()) {
        const auto cookie = entry.isObject() ? one(entry.toObject()) : std::nullopt;
        if (!cookie)
            return std::nullopt;
        cookies.append(*cookie);
    }
    return cookies;
}

} // namespace

namespace StoredCookies {

QByteArray encode(const QList<WebCookie>& cookies) {
    QJsonArray list;
    for (const WebCookie& cookie : cookies) {
        QJsonObject object = encodeOne({cookie.name, cookie.domain, cookie.expires});
        object.insert(u"value"_s, cookie.value);
        object.insert(u"path"_s, cookie.path);
        object.insert(u"secure"_s, cookie.secure);
        list.append(object);
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

std::optional<QList<WebCookie>> decode(const QByteArray& data) {
    return decodeAll(data, decodeOne);
}

QByteArray encodeKnown(const QList<KnownCookie>& cookies) {
    QJsonArray list;
    for (const KnownCookie& cookie : cookies)
        list.append(encodeOne(cookie));
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

std::optional<QList<KnownCookie>> decodeKnown(const QByteArray& data) {
    return decodeAll(data, decodeOneKnown);
}

} // namespace StoredCookies
