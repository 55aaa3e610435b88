// SPDX-License-Identifier: MIT
#pragma once

#include "standin/Counters.h"
#include "standin/Misbehaviour.h"
#include "standin/Options.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>
#include <optional>

namespace standin {

/// A stand-in for the airline's web site on the loopback addresses, for tests and demonstrations.
/// One port serves several hosts: the site, its identity provider and a third party. It runs on a
/// thread of its own. start() and stop() belong to one thread, the rest may be called from any.
class StandIn {
public:
    explicit StandIn(Options options);
    ~StandIn();

    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    /// Reads the state file and begins to listen; after a stop(), where it was before. Returns the
    /// error, or nothing on success.
    [[nodiscard]] std::optional<QString> start();

    /// Closes every connection at once. What was counted stays readable, and so does the address.
    void stop();

    quint16 port() const;       ///< 0 before start()
    QString siteOrigin() const; ///< "http://site.localhost:PORT"
    static QString siteDomain() { return QStringLiteral("site.localhost"); }
    static QString idpHost() { return QStringLiteral("id.localhost"); }
    static QString idpDomain() { return QStringLiteral("id.localhost"); }
    static QString adsHost() { return QStringLiteral("ads.localhost"); }

    /// Makes the site misbehave from now on; Kind::None makes it behave again.
    /// `leg`: "OSL-BKK-20270301", or "*" for all legs without an entry of their own.
    void misbehave(const QString& leg, const Misbehaviour& misbehaviour);

    /// The requests of a host, the latest 10,000 of all hosts, as "GET /path?query".
    QStringList requests(const QString& host) const;

    /// How often the search page of a leg ("OSL-BKK-20270301") has been loaded.
    int looks(const QString& leg) const;
    /// When the socket took the last byte of the last answer for a page's own leg; absent before
    /// the first. An answer that is cut off or never comes does not count.
    std::optional<std::chrono::steady_clock::time_point> answeredAt(const QString& leg) const;
    Counters counters() const;

    /// Changes how signing in behaves from the next request on; sessions stay.
    void setSignIn(const SignInOptions& options);
    void expireSiteSession(); ///< signs every visitor out of the site
    void expireSso();         ///< ends single sign-on, so that the forms are shown next time

    QString lastUser() const;     ///< as submitted last, right or wrong
    QString lastPassword() const; ///< as submitted last, right or wrong

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace standin
