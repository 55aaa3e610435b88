// SPDX-License-Identifier: MIT
#pragma once

#include "standin/HttpServer.h"

#include <QByteArray>
#include <QMap>
#include <QString>

namespace standin {

/// The addresses of the stand-in's hosts, with scheme and port.
struct Origins {
    QString site;
    QString idp;
    QString ads;
};

/// The built-in page with this file name, each {{key}} in it replaced by its value, escaped for
/// HTML. An unknown page or a key without a value is a programming error (std::logic_error).
HttpResponse page(const QString& name, const QMap<QString, QString>& values = {}, int status = 200);

/// A built-in style sheet, script or picture as it is, cacheable for an hour; absent when there is
/// none of that name.
std::optional<HttpResponse> asset(const QString& name);

HttpResponse json(const QByteArray& body, int status = 200);
HttpResponse redirect(const QString& address);
HttpResponse notFound();

/// Adds a Set-Cookie header. `attributes` as in the header, e.g. "Path=/; HttpOnly".
void setCookie(HttpResponse& response, const QByteArray& name, const QByteArray& value,
               const QByteArray& attributes);

/// 32 random hexadecimal digits.
QByteArray randomToken();

} // namespace standin
