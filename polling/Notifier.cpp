// SPDX-License-Identifier: MIT
#include "polling/Notifier.h"

#include "core/Database.h"
#include "core/Norwegian.h"
#include "platform/NotificationCenter.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto repeatWindow = 3h;
/// A desktop that is there takes some milliseconds.
constexpr auto settlingTime = 100ms;

/// The two lines that describe an offer.
QString offerText(const Match& match) {
    const QString points =
        match.points >= 1 ? u" · %1 poeng"_s.arg(Norwegian::number(match.points)) : QString();
    return u"%1 · %2 seter%3\n%4 → %5 · %6"_s.arg(label(match.cabin), QString::number(match.seats),
                                                  points, match.depart.text(), match.arrive.text(),
                                                  match.stopsText());
}

} // namespace

/// What was last seen of fares, read once.
class Notifier::LastSeen {
public:
    explicit LastSeen(Database& database) : m_database(database) {}

    bool isStillSo(const Match& match) {
        return match.isCommunity ? ofOthers().contains(match.offer())
                                 : of(match.searchId, match.key).contains(match.cabin);
    }
    bool isStillSo(const SoldOut& record) {
        return (of(record.searchId, record.key) & record.cabins).isEmpty();
    }

private:
    CabinSet of(qint64 watcher, const FareKey& key) {
        if (!m_seen.contains(watcher))
            m_seen.insert(watcher, m_database.seen().seenCabins(watcher));
        return m_seen[watcher].value(key).cabins;
    }
    const QSet<OfferId>& ofOthers() {
        if (!m_ofOthers)
            m_ofOthers = m_database.seen().seenOfOthers();
        return *m_ofOthers;
    }

    Database& m_database;
    QHash<qint64, QMap<FareKey, SeenStore::Seen>> m_seen;
    std::optional<QSet<OfferId>> m_ofOthers;
};

Notifier::Notifier(Database& database, NotificationCenter& center, Clock& clock)
    : m_database(database), m_center(center), m_clock(clock) {}

Notifier::~Notifier() {
    markTold();
    m_underWay.clear();
    endSettling();
}

void Notifier::requestPermission() {
    m_center.requestAuthorization();
}

void Notifier::notifyNewFare(const Match& match) {
    if (!shouldNotify(match.offer())) {
        told(match.id);
        return;
    }
    postOffer(u"✈️ Ny bonusreise: %1 → %2"_s.arg(match.fromCity, match.toCity), offerText(match),
              match);
}

void Notifier::notifySoldOut(const SoldOut& record) {
    if (!m_database.settings().isOn(Setting::notifySoldOut)) {
        told(record.id);
        return;
    }
    QStringList names;
    for (const Cabin cabin : record.cabins)
        names.append(label(cabin));
    names.sort();
    hand({u"🔴 Utsolgt"_s,
          u"%1\n%2 er ikke lenger tilgjengelig"_s.arg(record.label, names.join(u", "_s))},
         record.id, {});
}

void Notifier::notifyCommunityFare(const Match& match) {
    postOffer(u"👥 Fellesskapet fant: %1 → %2"_s.arg(match.fromCity, match.toCity),
              offerText(match) + u" — book raskt, plassene forsvinner fort"_s, match);
}

void Notifier::notifySignedOut(SignOut how) {
    QString reason;
    if (how == SignOut::windowWaits)
        reason = u"Automatisk innlogging trenger et dytt — fullfør i innloggingsvinduet som står "
                 u"åpent. "_s;
    else if (how == SignOut::autoLoginFailed)
        reason = u"Automatisk innlogging feilet — sjekk EuroBonus-detaljene i Innstillinger. "_s;
    post(u"⚠️ Logget ut av SAS"_s, reason + u"Søkene får ingen data før du er innlogget igjen."_s);
}

bool Notifier::canPost() const {
    return m_database.settings().isOn(Setting::nativeNotify) && m_center.isAvailable();
}

void Notifier::post(const QString& title, const QString& body) {
    hand({title, body}, 0, {});
}

void Notifier::postOffer(const QString& title, const QString& body, const Match& match) {
    const QString booking = match.bookingURL.isEmpty() ? QString() : u"Book på SAS"_s;
    hand({title, body, match.offer().text(), booking}, match.id, match.offer());
}

void Notifier::hand(const Notification& notification, qint64 match,
                    const std::optional<OfferId>& offer) {
    if (!m_database.settings().isOn(Setting::nativeNotify)) {
        told(match);
        return;
    }
    m_underWay.insert(match);
    const auto taken = [self = QPointer(this), match, offer](bool isTaken) {
        if (!self)
            return;
        self->m_underWay.remove(match);
        // What the desktop did not take is told when it can, if it is still worth telling.
        if (isTaken)
            self->told(match);
        else if (offer)
            self->m_recentlyNotified.remove(*offer);
        self->endSettling();
    };
    m_center.post(notification, taken);
}

void Notifier::told(qint64 match) {
    if (match <= 0)
        return;
    m_told.append(match);
    if (!std::exchange(m_isMarking, true))
        QMetaObject::invokeMethod(this, &Notifier::markTold, Qt::QueuedConnection);
}

/// What cannot be stored is tried again with the next one.
void Notifier::markTold() {
    m_isMarking = false;
    if (!m_told.isEmpty() && m_database.offers().markTold(m_told))
        m_told.clear();
    endSettling();
}

QCoro::Task<> Notifier::settled() {
    if (m_underWay.isEmpty() && !m_isMarking)
        co_return;
    const OneShot<bool> end;
    m_settling.append(end);
    const auto patience = m_clock.after(settlingTime, [end] { end.resolve(false); });
    co_await end;
}

void Notifier::endSettling() {
    if (!m_underWay.isEmpty() || m_isMarking)
        return;
    for (const auto& end : std::exchange(m_settling, {}))
        end.resolve(true);
}

void Notifier::tellRest() {
    const Instant oldest = m_clock.now() - repeatWindow;
    LastSeen seen(m_database);
    for (const Hit& hit : m_database.offers().untold()) {
        std::visit(
            [&](const auto& one) {
                if (m_underWay.contains(one.id) || m_told.contains(one.id))
                    return;
                if (one.foundAt < oldest || !seen.isStillSo(one))
                    told(one.id);
                else
                    notify(one);
            },
            hit);
    }
}

void Notifier::notify(const Match& match) {
    if (match.isCommunity)
        notifyCommunityFare(match);
    else
        notifyNewFare(match);
}

bool Notifier::shouldNotify(const OfferId& offer) {
    const Ticks now = m_clock.ticks();
    m_recentlyNotified.removeIf(
        [now](QHash<OfferId, Ticks>::iterator last) { return now - last.value() >= repeatWindow; });
    if (m_recentlyNotified.contains(offer))
        return false;
    m_recentlyNotified.insert(offer, now);
    return true;
}
