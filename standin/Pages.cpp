// SPDX-License-Identifier: MIT
#include "standin/Pages.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRandomGenerator>

#include <mutex>
#include <stdexcept>

// Outside any namespace, as the macro demands; without it a static library loses its resources.
static void registerPages() {
    Q_INIT_RESOURCE(standin_pages);
}

namespace standin {
namespace {

std::optional<QByteArray> pageFile(const QString& name) {
    static std::once_flag once;
    std::call_once(once, registerPages);
    QFile file(QStringLiteral(":/standin/pages/") + name);
    if (name.contains(u'/') || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

QByteArray contentType(const QString& name) {
    static const QHash<QString, QByteArray> types{
        {QStringLiteral("html"), "text/html; charset=utf-8"},
        {QStringLiteral("css"), "text/css; charset=utf-8"},
        {QStringLiteral("js"), "text/javascript; charset=utf-8"},
        {QStringLiteral("svg"), "image/svg+xml"}};
    return types.value(QFileInfo(name).suffix());
}

} // namespace

HttpResponse page(const QString& name, const QMap<QString, QString>& values, int status) {
    const std::optional<QByteArray> file = pageFile(name);
    if (!file)
        throw std::logic_error("there is no page " + name.toStdString());
    QString text = QString::fromUtf8(*file);
    for (qsizetype at = 0; (at = text.indexOf(u"{{", at)) >= 0;) {
        const qsizetype end = text.indexOf(u"}}", at);
        const auto value = values.constFind(text.mid(at + 2, end - at - 2));
        if (end < 0 || value == values.constEnd())
            throw std::logic_error("a value is missing in " + name.toStdString());
        const QString escaped = value->toHtmlEscaped();
        text.replace(at, end + 2 - at, escaped);
        at += escaped.size();
    }
    HttpResponse response;
    response.status = status;
    response.headers = {{"Content-Type", contentType(name)}, {"Cache-Control", "no-store"}};
    response.body = text.toUtf8();
    return response;
}

std::optional<HttpResponse> asset(const QString& name) {
    const std::optional<QByteArray> file = pageFile(name);
    if (!file || name.endsWith(u".html"))
        return std::nullopt;
    HttpResponse response;
    response.headers = {{"Content-Type", contentType(name)}, {"Cache-Control", "max-age=3600"}};
    response.body = *file;
    return response;
}

HttpResponse json(const QByteArray& body, int status) {
    HttpResponse response;
    response.status = status;
    response.headers = {{"Content-Type", "application/json"}, {"Cache-Control", "no-store"}};
    response.body = body;
    return response;
}

HttpResponse redirect(const QString& address) {
    HttpResponse response;
    response.status = 302;
    response.headers = {{"Location", address.toUtf8()}, {"Cache-Control", "no-store"}};
    return response;
}

HttpResponse notFound() {
    return page(QStringLiteral("notfound.html"), {}, 404);
}

void setCookie(HttpResponse& response, const QByteArray& name, const QByteArray& value,
               const QByteArray& attributes) {
    response.headers.append({"Set-Cookie", name + '=' + value + "; " + attributes});
}

QByteArray randomToken() {
    quint32 words[4];
    QRandomGenerator::system()->fillRange(words);
    return QByteArray(reinterpret_cast<const char*>(words), sizeof words).toHex();
}

} // namespace standin
