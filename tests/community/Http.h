// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QList>
#include <QMap>
#include <QTcpSocket>

#include <memory>

/// A waiting client of a service on this machine.
struct Http {
    struct Reply {
        int status = 0;                    ///< 0 when no answer arrived within ten seconds
        QMap<QByteArray, QByteArray> head; ///< names in lower case
        QByteArray body;

        QByteArray error() const; ///< of {"error": …}
        QJsonArray hits() const;  ///< of {"hits": […]}
    };

    quint16 port;

    Reply get(const QByteArray& target, const QByteArray& headers = {}) const;
    /// The finds for these routes, such as "OSL-BKK,BGO-NYC".
    QJsonArray hits(const QByteArray& routes) const;
    Reply post(const QByteArray& target, const QByteArray& body,
               const QByteArray& headers = "Content-Type: application/json\r\n") const;
    int report(const QJsonArray& hits) const; ///< the status

    /// A connection that has sent these bytes.
    std::unique_ptr<QTcpSocket> open(const QByteArray& bytes) const;
    /// The next answer on it.
    static Reply next(QTcpSocket& socket);
    Reply raw(const QByteArray& bytes) const { return next(*open(bytes)); }
};
