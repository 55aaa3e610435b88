// SPDX-License-Identifier: MIT
#include "Client.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QUrl>

namespace {

constexpr int patience = 10'000;

QByteArray crlf(const QList<QByteArray>& lines) {
    return lines.join("\r\n") + "\r\n\r\n";
}

} // namespace

QJsonObject Client::Reply::json() const {
    return QJsonDocument::fromJson(body).object();
}

QByteArray Client::raw(const QByteArray& bytes, const QString& address) {
    QTcpSocket socket;
    socket.connectToHost(address, m_port);
    if (!socket.waitForConnected(patience))
        return {};
    socket.write(bytes);
    QElapsedTimer elapsed;
    elapsed.start();
    while (socket.state() == QAbstractSocket::ConnectedState && !elapsed.hasExpired(patience))
        socket.waitForReadyRead(patience);
    return socket.readAll();
}

Client::Reply Client::exchange(const QString& host, const QByteArray& head,
                               const QByteArray& body) {
    QByteArray cookies;
    for (auto it = jar[host].cbegin(); it != jar[host].cend(); ++it)
        cookies += (cookies.isEmpty() ? "Cookie: " : "; ") + it.key() + '=' + it.value();
    QList<QByteArray> lines{head, "Host: " + host.toLatin1() + ':' + QByteArray::number(m_port),
                            "Connection: close"};
    if (!cookies.isEmpty())
        lines.append(cookies);
    if (!body.isEmpty())
        lines.append({"Content-Type: application/x-www-form-urlencoded",
                      "Content-Length: " + QByteArray::number(body.size())});
    const QByteArray answer = raw(crlf(lines) + body);

    Reply reply;
    const qsizetype end = answer.indexOf("\r\n\r\n");
    if (end < 0)
        return reply;
    QList<QByteArray> header = answer.first(end).split('\n');
    reply.status = header.takeFirst().split(' ').value(1).toInt();
    for (const QByteArray& line : header) {
        const qsizetype colon = line.indexOf(':');
        reply.head.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    reply.body = answer.sliced(end + 4);
    reply.isComplete = reply.head.value("content-length").toLongLong() == reply.body.size();
    for (const QByteArray& cookie : reply.head.values("set-cookie")) {
        const QByteArray pair = cookie.split(';').first();
        const QByteArray name = pair.split('=').first();
        if (cookie.contains("Max-Age=0"))
            jar[host].remove(name);
        else
            jar[host][name] = pair.sliced(name.size() + 1);
    }
    return reply;
}

Client::Reply Client::get(const QString& host, const QString& target) {
    return exchange(host, "GET " + target.toUtf8() + " HTTP/1.1", {});
}

Client::Reply Client::post(const QString& host, const QString& target,
                           const QList<std::pair<QString, QString>>& form) {
    QByteArray body;
    for (const auto& [name, value] : form) {
        // Browsers send a space as "+".
        const QByteArray written = QUrl::toPercentEncoding(value, " ").replace(' ', '+');
        body += (body.isEmpty() ? "" : "&") + name.toUtf8() + '=' + written;
    }
    return exchange(host, "POST " + target.toUtf8() + " HTTP/1.1", body);
}

Client::Reply Client::browse(const QString& host, const QString& target) {
    visited.clear();
    return follow(get(host, target), host);
}

Client::Reply Client::follow(Reply reply, const QString& host) {
    QString at = host;
    while (reply.status == 302 && visited.size() < 20) {
        const QUrl next(QString::fromUtf8(reply.head.value("location")));
        if (!next.host().isEmpty())
            at = next.host();
        visited.append(at + next.path());
        reply = get(
            at, QString::fromLatin1(next.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority)));
    }
    return reply;
}
