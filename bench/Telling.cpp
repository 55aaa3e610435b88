// SPDX-License-Identifier: MIT
// From an answer with one new seat to its notification, against what cannot be left out of that.
#include "airline/SAS.h"
#include "bench/Hunter.h"
#include "bench/NotificationLog.h"
#include "bench/Results.h"
#include "bench/Timing.h"
#include "standin/Inventory.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int samples = 60;
constexpr qsizetype answerBytes = 544 * 1024;
constexpr auto measuringApp = "measuring";

/// Further apart than the days that a page asks for beside its own.
constexpr int daysBetween = 5;

/// Dates on which the first look finds one seat offer and no other.
QList<QDate> datesOfOneOffer(quint64 seed, QDate from) {
    const standin::Inventory inventory(seed);
    QList<QDate> dates;
    for (QDate date = from; dates.size() < samples; date = date.addDays(1)) {
        int offers = 0;
        for (const standin::Flight& flight : inventory.flights({u"OSL"_s, u"LHR"_s, date}, 1)) {
            for (const standin::AwardCabin& cabin : flight.cabins)
                offers += !flight.isPartner && cabin.seats > 0 ? 1 : 0;
        }
        if (offers == 1 && (dates.isEmpty() || dates.last().daysTo(date) >= daysBetween))
            dates.append(date);
    }
    return dates;
}

/// The offer answer that reached the application last, with its time.
struct Message {
    QDate date;
    QByteArray body;
    TimePoint at{};

    void take(const ScriptMessage& message) {
        const TimePoint now = SteadyClock::now();
        const QString url = QString::fromUtf8(message.texts.value(u"url"_s));
        const QByteArray answer = message.texts.value(u"body"_s);
        // An advertisement's frame sends smaller ones, which nobody believes.
        if (answer.size() < answerBytes / 2 || !SAS::isRequestOf({{u"OSL"_s, u"LHR"_s}, date}, url))
            return;
        at = now;
        body = answer;
    }
};

/// What there is no telling without: reading the answer, one commit that reaches the disk, and a
/// call of the notification service. In milliseconds.
class Least {
public:
    Least() : m_database(m_folder.path(), m_clock) {}

    double take(const QByteArray& body, const Match& match) {
        const Leg leg{{u"OSL"_s, u"LHR"_s}, match.travelDate(), Flow::points};
        auto call = QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s,
                                                   u"/org/freedesktop/Notifications"_s,
                                                   u"org.freedesktop.Notifications"_s, u"Notify"_s);
        call << QString::fromLatin1(measuringApp) << quint32(0) << QString() << u"title"_s
             << match.route().text() << QStringList() << QVariantMap() << -1;
        const TimePoint start = SteadyClock::now();
        const auto fares = m_parser.parse(body, leg);
        const bool isStored = m_database.transaction([&] {
            m_database.offers().recordMatch(match, OfferStore::Telling::isDue);
            m_database.seen().upsertSeen(match.searchId, match.key,
                                         {{match.cabin}, match.route().text()});
        });
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
        const TimePoint end = SteadyClock::now();
        if (!fares || !isStored || reply.type() != QDBusMessage::ReplyMessage)
            qFatal("reading, storing and calling alone failed");
        return 1000 * secondsFrom(start, end);
    }

private:
    QTemporaryDir m_folder;
    LinuxClock m_clock;
    Database m_database;
    OfferParser m_parser{Site()};
};

} // namespace

QList<Result> measureTelling() {
    standin::Options options;
    options.pageDelay = 20ms;
    options.responseBytes = answerBytes;
    options.signIn.isEverybodyKnown = true;
    standin::StandIn airline(options);
    if (const auto error = airline.start())
        qFatal("%s", qPrintable(*error));
    NotificationLog desktop;
    const QTemporaryDir folder;
    Message message;
    Hunter hunter(folder.path(), airline, [&message](WebView& view) {
        QObject::connect(&view, &WebView::scriptMessage, &view,
                         [&message](const ScriptMessage& sent) { message.take(sent); });
    });
    Least least;
    QList<double> within;
    QList<double> fromSocket;
    QList<double> alone;
    for (const QDate date : datesOfOneOffer(options.seed, hunter.clock.today().addDays(10))) {
        message.date = date;
        hunter.watch(date, 1);
        const PollSummary summary = hunter.round();
        const auto arrivals = desktop.take(1);
        if (summary.newAlerts != 1 || arrivals.size() != 1)
            qFatal("%s: %d finds, %d notifications %s", qPrintable(legKey(date)), summary.newAlerts,
                   int(arrivals.size()), qPrintable(summary.errors.join(u' ')));
        within.append(1000 * secondsFrom(message.at, arrivals[0].at));
        fromSocket.append(1000 * secondsFrom(answeredAt(airline, date), arrivals[0].at));
        alone.append(least.take(
            message.body, std::get<Match>(hunter.database.offers().recentMatches(1).constFirst())));
        desktop.take(1);
        hunter.database.watchers().deleteSearch(
            hunter.database.watchers().listSearches().constFirst().id);
    }
    const double ratio = median(within) / median(alone);
    return {{u"%1 KiB answer with one new seat to its notification, against reading, a commit and "
             u"a D-Bus call alone (%2 / %3 ms)"_s.arg(message.body.size() / 1024)
                 .arg(median(within), 0, 'f', 2)
                 .arg(median(alone), 0, 'f', 2),
             QString::number(ratio, 'f', 2), u"≤ 1.5"_s, ratio <= 1.5},
            {u"the same from the answer's last byte in the server's socket (worst %1 ms)"_s.arg(
                 *std::max_element(fromSocket.begin(), fromSocket.end()), 0, 'f', 0),
             u"%1 ms"_s.arg(median(fromSocket), 0, 'f', 1), u"-"_s, true}};
}
