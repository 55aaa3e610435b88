// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"
#include "core/Match.h"
#include "platform/HttpSession.h"

#include <QObject>
#include <QStringList>

class Clock;
class Database;

/// Finds shared between hunters, without any identity. Every failure is silent: what could not be
/// sent is dropped, and what could not be had is an empty list; the next round tries again.
/// The settings `share_hits` (on until switched off) and `community_url` (the service's base
/// address) are read anew at each call.
class Community : public QObject {
    Q_OBJECT
public:
    /// `builtInBase` is the base address while `community_url` is missing. All must outlive the
    /// object.
    Community(Database& database, HttpSession& session, Clock& clock,
              QString builtInBase = builtInBaseAddress());

    /// The build's own; under ".invalid", where nothing can answer, unless it was configured.
    static QString builtInBaseAddress();

    bool isSharing() const;

    /// Routes that one request asks for at most.
    static constexpr qsizetype mostRoutes = 60;
    /// What others have found on `routes` ("OSL-NYC"), the first `mostRoutes` of them, in the
    /// service's order. Absent when nobody was asked or there was no answer that makes sense.
    QCoro::Task<std::optional<QList<Match>>> fetchHits(QStringList routes);
    /// Shares those of the offers that are not sold out.
    QCoro::Task<> report(QList<Match> matches);
    /// Tells that `cabins` of the fare `key` are gone, one request a cabin.
    QCoro::Task<> reportSoldOut(QString key, CabinSet cabins);

private:
    std::optional<QUrl> base() const;
    QCoro::Task<> post(QString path, QJsonObject body, QUrl base);

    Database& m_database;
    HttpSession& m_session;
    Clock& m_clock;
    QString m_builtInBase;
};
