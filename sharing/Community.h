// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Cabin.h"
#include "core/Match.h"
#include "platform/HttpSession.h"

#include <QObject>
#include <QStringList>

class Clock;
class Settings;

/// What others have found, as far as they have told.
struct FoundByOthers {
    /// In the service's order.
    QList<Match> hits;
    /// The service left none out for want of room.
    bool isWhole = true;

    bool operator==(const FoundByOthers&) const = default;
};

/// Finds shared between hunters, without any identity. Every failure is silent: what could not be
/// sent is dropped, and what could not be had is absent; the next round tries again.
/// The settings `share_hits` (on until switched off) and `community_url` (the service's base
/// address) are read anew at each call.
class Community : public QObject {
    Q_OBJECT
public:
    /// `builtInBase` is the base address while `community_url` is missing, `site` is where offers
    /// can be booked. All must outlive the object.
    Community(const Settings& settings, HttpSession& session, Clock& clock, Site site,
              QString builtInBase = builtInBaseAddress());

    /// The build's own; under ".invalid", where nothing can answer, unless it was configured.
    static QString builtInBaseAddress();

    bool isSharing() const;

    /// Routes that one request asks for at most.
    static constexpr qsizetype mostRoutes = 60;
    /// What others have found on `routes`, the first `mostRoutes` of them; booking
    /// addresses that are not the airline's are left out. Absent when nobody was asked or there was
    /// no answer that makes sense.
    QCoro::Task<std::optional<FoundByOthers>> fetchHits(QList<Route> routes);
    /// The service's base address as it is now; absent when nothing is sent.
    std::optional<QUrl> base() const;
    /// Shares those that the service would take.
    QCoro::Task<> report(QList<Match> matches);
    /// Tells that `cabins` of the fare `key` are gone, one request a cabin.
    QCoro::Task<> reportSoldOut(FareKey key, CabinSet cabins);

private:
    QCoro::Task<> post(QString path, QJsonObject body, QUrl base);

    const Settings& m_settings;
    HttpSession& m_session;
    Clock& m_clock;
    Site m_site;
    QString m_builtInBase;
};
