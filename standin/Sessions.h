// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>

#include <chrono>

namespace standin {

/// The sessions of one host, by the token in its cookie. Instants are seconds since 1970-01-01
/// 00:00 UTC.
class Sessions {
public:
    struct Session {
        qint64 expires = 0;    ///< 0: never
        bool isSilent = false; ///< came about without a form
    };

    /// Opens a session and returns its token. `life` 0: without end.
    QByteArray open(qint64 now, std::chrono::seconds life, bool isSilent);

    /// The session of a token; nullptr when there is none or it has expired.
    const Session* find(const QByteArray& token, qint64 now) const;

    /// Starts the life of a session again.
    void renew(const QByteArray& token, qint64 now, std::chrono::seconds life);

    void clear();

    QJsonObject state() const;
    void restore(const QJsonObject& state);

private:
    QMap<QByteArray, Session> m_sessions;
};

} // namespace standin
