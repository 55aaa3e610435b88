// SPDX-License-Identifier: MIT
#include "polling/Notifier.h"

#include "core/Database.h"
#include "platform/NotificationCenter.h"
#include "polling/CommunityFind.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto repeatWindow = 3h;

/// The two lines that describe an offer.
QString offerText(const Match& match) {
    // The interface is Norwegian, so its numbers are too.
    static const QLocale norwegian(QLocale::NorwegianBokmal, QLocale::Norway);
    const QString points =
        match.points >= 1 ? u" · %1 poeng"_s.arg(norwegian.toString(match.points)) : QString();
    return u"%1 · %2 seter%3\n%4 → %5 · %6"_s.arg(cabinLabel(match.cabin),
                                                  QString::number(match.seats), points,
                                                  match.depart, match.arrive, match.stopsText);
}

} // namespace

Notifier::Notifier(Database& database, NotificationCenter& center, Clock& clock)
    : m_database(database), m_center(center), m_clock(clock) {}

void Notifier::requestPermission() {
    m_center.requestAuthorization();
}

void Notifier::notifyNewFare(const Match& match) {
    if (!shouldNotify(subject(match)))
        return;
    postOffer(u"✈️ Ny bonusreise: %1 → %2"_s.arg(match.fromCity, match.toCity), offerText(match),
              match);
}

void Notifier::notifySoldOut(const QString& label, const CabinSet& cabins) {
    if (!m_database.isOn(u"notify_soldout"_s, true))
        return;
    QStringList names;
    std::transform(cabins.begin(), cabins.end(), std::back_inserter(names), cabinLabel);
    names.sort();
    post(u"🔴 Utsolgt"_s, u"%1\n%2 er ikke lenger tilgjengelig"_s.arg(label, names.join(u", "_s)));
}

void Notifier::notifyCommunityFare(const Match& match) {
    postOffer(u"👥 Fellesskapet fant: %1 → %2"_s.arg(match.fromCity, match.toCity),
              offerText(match) + u" — book raskt, plassene forsvinner fort"_s, match);
}

bool Notifier::canPost() const {
    return m_database.isOn(u"native_notify"_s, true) && m_center.isAvailable();
}

void Notifier::post(const QString& title, const QString& body) {
    if (m_database.isOn(u"native_notify"_s, true))
        m_center.post({title, body});
}

void Notifier::postOffer(const QString& title, const QString& body, const Match& match) {
    if (!m_database.isOn(u"native_notify"_s, true))
        return;
    const QString booking = match.bookingURL.isEmpty() ? QString() : u"Book på SAS"_s;
    m_center.post({title, body, subject(match), booking});
}

QString Notifier::subject(const Match& match) {
    return CommunityFind::identity(match);
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
