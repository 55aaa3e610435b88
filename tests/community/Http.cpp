// SPDX-License-Identifier: MIT
#include "Http.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr int patience = 10'000;

} // namespace

QByteArray Http::Reply::error() const {
    return QJsonDocument::fromJson(body).object().value(QLatin1String("error")).toString().toUtf8();
}

QJsonArray Http::Reply::hits() const {
    return QJsonDocument::fromJson(body).object().value(QLatin1String("hits")).toArray();
}

Http::Reply Http::get(const QByteArray& target, const QByteArray& headers) const {
    return raw("GET " + target + " HTTP/1.1\r\nHost: here\r\n" + headers + "\r\n");
}

QJsonArray Http::hits(const QByteArray& routes) const {
    return get("/v1/hits?routes=" + routes).hits();
}

Http::Reply Http::post(const QByteArray& target, const QByteArray& body,
                       const QByteArray& headers) const {
    return raw("POST " + target + " HTTP/1.1\r\nHost: here\r\n" + headers +
               "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

int Http::report(const QJsonArray& hits) const {
    return post("/v1/hits", QJsonDocument(QJsonObject{{QStringLiteral("hits"), hits}}).toJson())
        .status;
}

std::unique_ptr<QTcpSocket> Http::open(const QByteArray& bytes) const {
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QStringLiteral("127.0.0.1"), port);
    if (socket->waitForConnected(patience))
        socket->write(bytes);
    while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(patience)) {
    }
    return socket;
}

Http::Reply Http::next(QTcpSocket& socket) {
    QByteArray head;
    while (!head.endsWith("\r\n\r\n")) {
        if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(patience))
            return {};
        head += socket.read(1);
    }
    Reply reply;
    QList<QByteArray> lines = head.trimmed().split('\n');
    reply.status = lines.takeFirst().split(' ').value(1).toInt();
    for (const QByteArray& line : lines)
        reply.head[line.left(line.indexOf(':')).toLower()] =
            line.mid(line.indexOf(':') + 1).trimmed();
    const qsizetype size = reply.head.value("content-length").toLongLong();
    while (socket.bytesAvailable() < size && socket.waitForReadyRead(patience)) {
    }
    reply.body = socket.read(size);
    return reply;
}
