// SPDX-License-Identifier: MIT
#pragma once

#include "standin/StandIn.h"

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QTcpSocket>

#include <utility>

/// One leg's page at the stand-in's site, and what the page asks for.
inline const QString site = standin::StandIn::siteDomain();
inline const QString searchPage =
    QStringLiteral("/book/flights/?search=OW_OSL-BKK-20270301_a1c0i0y0"
                   "&view=upsell&bookingFlow=points&sortBy=rec,rec");
inline const QString offers =
    QStringLiteral("/api/offers/flights?from=OSL&to=BKK&outDate=2027-03-01");

/// A waiting HTTP client for the stand-in's hosts: a new connection for every request, and a cookie
/// jar with one drawer per host.
class Client {
public:
    struct Reply {
        int status = 0;                         ///< 0 when no answer arrived within ten seconds
        QMultiMap<QByteArray, QByteArray> head; ///< names in lower case
        QByteArray body;
        bool isComplete = false; ///< the body is as long as announced

        QJsonObject json() const; ///< empty when the body is no JSON object
    };

    explicit Client(quint16 port) : m_port(port) {}

    /// Sends the jar's cookies and keeps those of the answer; follows no redirect.
    Reply get(const QString& host, const QString& target);
    Reply post(const QString& host, const QString& target,
               const QList<std::pair<QString, QString>>& form);

    /// Follows redirects, noting each address, up to 20 of them.
    Reply browse(const QString& host, const QString& target);
    Reply follow(Reply reply, const QString& host);

    /// Sends these bytes and returns what comes back until the server closes or ten seconds pass.
    QByteArray raw(const QByteArray& bytes, const QString& address = QStringLiteral("127.0.0.1"));

    QMap<QString, QMap<QByteArray, QByteArray>> jar; ///< host → name → value
    QStringList visited;                             ///< "host/path" of each redirect followed

private:
    Reply exchange(const QString& host, const QByteArray& head, const QByteArray& body);

    quint16 m_port;
};
