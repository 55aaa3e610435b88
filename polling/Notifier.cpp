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

/// The two lines that describe an offer.
QString offerText(const Match& match) {
    const QString points =
        match.points >= 1 ? u" · %1 poeng"_s.arg(Norwegian::number(match.points)) : QString();
    return u"%1 · %2 seter%3\n%4 → %5 · %6"_s.arg(cabinLabel(match.cabin),
                                                  QString::number(match.seats), points,
                                                  match.depart, match.arrive, match.stopsText);
}

/// By what was last seen of its fare.
bool isStillSo(const Match& match, const QMap<QString, Database::Seen>& seen) {
    if (match.isCommunity)
        return seen.contains(match.identity());
    if (!match.soldOut)
        return seen.value(match.key).cabins.contains(match.cabin);
    const QString fare = match.key.chopped(QStringView(u":soldout").size());
    return !seen.value(fare).cabins.intersects(decodeCabins(match.cabin));
}

} // namespace

Notifier::Notifier(Database& database, NotificationCenter& center, Clock& clock)
    : m_database(database), m_center(center), m_clock(clock) {}

Notifier::~Notifier() {
    markTold();
}

void Notifier::requestPermission() {
    m_center.requestAuthorization();
}

void Notifier::notifyNewFare(const Match& match) {
    if (!shouldNotify(match.identity())) {
        told(match.id);
        return;
    }
    postOffer(u"✈️ Ny bonusreise: %1 → %2"_s.arg(match.fromCity, match.toCity), offerText(match),
              match);
}

void Notifier::notifySoldOut(const QString& label, const CabinSet& cabins, qint64 match) {
    if (!m_database.isOn(u"notify_soldout"_s, true)) {
        told(match);
        return;
    }
    QStringList names;
    std::transform(cabins.begin(), cabins.end(), std::back_inserter(names), cabinLabel);
    names.sort();
    hand({u"🔴 Utsolgt"_s, u"%1\n%2 er ikke lenger tilgjengelig"_s.arg(label, names.join(u", "_s))},
         match);
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
    return m_database.isOn(u"native_notify"_s, true) && m_center.isAvailable();
}

void Notifier::post(const QString& title, const QString& body) {
    hand({title, body}, 0);
}

void Notifier::postOffer(const QString& title, const QString& body, const Match& match) {
    const QString booking = match.bookingURL.isEmpty() ? QString() : u"Book på SAS"_s;
    hand({title, body, match.identity(), booking}, match.id);
}

void Notifier::hand(const Notification& notification, qint64 match) {
    if (!m_database.isOn(u"native_notify"_s, true)) {
        told(match);
        return;
    }
    m_underWay.insert(match);
    const auto taken = [self = QPointer(this), match, key = notification.subject](bool isTaken) {
        if (!self)
            return;
        self->m_underWay.remove(match);
        // What the desktop did not take is told when it can, if it is still worth telling.
        if (isTaken)
            self->told(match);
        else
            self->m_recentlyNotified.remove(key);
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
    if (!m_told.isEmpty() && m_database.markTold(m_told))
        m_told.clear();
}

void Notifier::tellRest() {
    const Instant oldest = m_clock.now() - repeatWindow;
    QHash<qint64, QMap<QString, Database::Seen>> seen;
    for (const Match& match : m_database.untold()) {
        if (!seen.contains(match.searchId))
            seen.insert(match.searchId, m_database.seenCabins(match.searchId));
        if (m_underWay.contains(match.id) || m_told.contains(match.id))
            continue;
        if (match.foundAt < oldest || !isStillSo(match, seen[match.searchId]))
            told(match.id);
        else if (match.soldOut)
            notifySoldOut(match.route, decodeCabins(match.cabin), match.id);
        else if (match.isCommunity)
            notifyCommunityFare(match);
        else
            notifyNewFare(match);
    }
}

bool Notifier::shouldNotify(const QString& key) {
    const Ticks now = m_clock.ticks();
    m_recentlyNotified.removeIf(
        [now](QHash<QString, Ticks>::iterator last) { return now - last.value() >= repeatWindow; });
    if (m_recentlyNotified.contains(key))
        return false;
    m_recentlyNotified.insert(key, now);
    return true;
}
