// SPDX-License-Identifier: MIT
#pragma once

#include "standin/Counters.h"
#include "standin/HttpServer.h"
#include "standin/Inventory.h"
#include "standin/Misbehaviour.h"
#include "standin/Options.h"
#include "standin/Pages.h"
#include "standin/RefusalOnce.h"
#include "standin/SiteSignIn.h"

#include <QJsonObject>
#include <QMap>

namespace standin {

/// The airline's own host: start page, the two search pages and the two offer endpoints. The
/// addresses below /auth/ belong to SiteSignIn.
class Site {
public:
    Site(const Options& options, const Origins& origins, SiteSignIn& signIn, Counters& counters);

    HttpResponse answer(const HttpRequest& request);

    /// `leg` is Leg::key() or "*" for every leg without an entry of its own.
    void misbehave(const QString& leg, const Misbehaviour& misbehaviour);

    /// How often the leg's search page has been loaded.
    int looks(const QString& leg) const { return m_looks.value(leg); }

    /// When the socket took the last byte of the leg's last answer; absent before the first.
    std::optional<std::chrono::steady_clock::time_point> answeredAt(const QString& leg) const;

    QJsonObject state() const;
    void restore(const QJsonObject& state);

private:
    HttpResponse searchPage(const HttpRequest& request, const std::optional<Leg>& leg);
    HttpResponse offers(const HttpRequest& request, const std::optional<Leg>& leg, bool award);
    QString patternOf(const Leg& leg) const;
    Misbehaviour misbehaviourAt(const Leg& leg) const;
    Misbehaviour misbehaviourOfAnswer(const Leg& leg);
    HttpResponse htmlPage(const HttpRequest& request, const QString& name) const;
    void setVisitorCookies(HttpResponse& response, const HttpRequest& request) const;

    const Options& m_options;
    const Origins& m_origins;
    SiteSignIn& m_signIn;
    Counters& m_counters;
    Inventory m_inventory;
    QMap<QString, Misbehaviour> m_misbehaviours;
    QMap<QString, int> m_looks;
    QMap<QString, int> m_alternations; ///< requests under Alternate, by pattern
    QMap<QString, int> m_failedLooks;  ///< one more than the look that Twice failed, by leg
    QMap<QString, std::chrono::steady_clock::time_point> m_answeredAt; ///< by leg
    RefusalOnce m_refusal;
};

} // namespace standin
