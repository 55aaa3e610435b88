// SPDX-License-Identifier: MIT
#include "standin/Sessions.h"

#include "standin/Pages.h"

namespace standin {
namespace {

qint64 endOf(qint64 now, std::chrono::seconds life) {
    return life.count() > 0 ? now + life.count() : 0;
}

bool hasExpired(const Sessions::Session& session, qint64 now) {
    return session.expires != 0 && session.expires <= now;
}

} // namespace

QByteArray Sessions::open(qint64 now, std::chrono::seconds life, bool isSilent) {
    m_sessions.removeIf([now](auto it) { return hasExpired(it.value(), now); });
    const QByteArray token = randomToken();
    m_sessions.insert(token, {endOf(now, life), isSilent});
    return token;
}

const Sessions::Session* Sessions::find(const QByteArray& token, qint64 now) const {
    const auto it = m_sessions.constFind(token);
    return it == m_sessions.constEnd() || hasExpired(*it, now) ? nullptr : &*it;
}

void Sessions::renew(const QByteArray& token, qint64 now, std::chrono::seconds life) {
    if (find(token, now))
        m_sessions[token].expires = endOf(now, life);
}

void Sessions::clear() {
    m_sessions.clear();
}

QJsonObject Sessions::state() const {
    QJsonObject result;
    for (auto it = m_sessions.cbegin(); it != m_sessions.cend(); ++it)
        result.insert(QString::fromLatin1(it.key()),
                      QJsonObject{{QStringLiteral("expires"), it->expires},
                                  {QStringLiteral("silent"), it->isSilent}});
    return result;
}

void Sessions::restore(const QJsonObject& state) {
    for (auto it = state.begin(); it != state.end(); ++it)
        m_sessions.insert(it.key().toLatin1(),
                          {it.value()[u"expires"].toInteger(), it.value()[u"silent"].toBool()});
}

} // namespace standin
