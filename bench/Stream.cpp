// SPDX-License-Identifier: MIT
// What the whole of Tindra makes of what the airline does, from one round to the next: how soon a
// find is told, how often is looked, and what an airline in trouble must not lead to.
#include "bench/Hunter.h"
#include "bench/MutePrompter.h"
#include "bench/NotificationLog.h"
#include "bench/Results.h"
#include "bench/Timing.h"
#include "core/DateFmt.h"
#include "standin/Inventory.h"
#include "tests/support/TestBus.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using standin::Misbehaviour;

constexpr int manyDates = 40;

QString inSeconds(double value) {
    return u"%1 s"_s.arg(value, 0, 'f', 2);
}

Result count(const QString& subject, qsizetype found, qsizetype goal) {
    return {subject, QString::number(found), QString::number(goal), found == goal};
}

/// An airline, a desktop and a data folder. Provider and site know the browser.
struct Scene {
    explicit Scene(std::chrono::milliseconds pageDelay = 20ms) : airline(options(pageDelay)) {
        if (const auto error = airline.start())
            qFatal("%s", qPrintable(*error));
    }

    static standin::Options options(std::chrono::milliseconds pageDelay) {
        standin::Options options;
        options.pageDelay = pageDelay;
        options.signIn.isEverybodyKnown = true;
        return options;
    }
    /// The airline no longer knows the browser.
    void signOutEverywhere() {
        standin::SignInOptions signIn = options(0ms).signIn;
        signIn.isEverybodyKnown = false;
        airline.setSignIn(signIn);
        airline.expireSiteSession();
        airline.expireSso();
    }
    /// Search pages asked for whose address has one of `keys` in it.
    qsizetype looks(const QStringList& keys) const {
        const QStringList requests = airline.requests(airline.siteDomain());
        return std::count_if(requests.begin(), requests.end(), [&](const QString& request) {
            return request.startsWith(u"GET /book/flights"_s) &&
                   std::any_of(keys.begin(), keys.end(),
                               [&request](const QString& key) { return request.contains(key); });
        });
    }
    /// Requests to the identity provider and to the site's own sign-in.
    qsizetype signInRequests() const {
        return airline.requests(airline.idpHost()).size() +
               airline.requests(airline.siteDomain()).filter(u" /auth/"_s).size();
    }

    standin::StandIn airline;
    QTemporaryDir folder;
};

/// So many days in a row of which each has offers that are new at the first look.
QDate daysWithOffers(QDate from, int days) {
    const standin::Inventory inventory(standin::Options().seed);
    const auto hasOffer = [&inventory](QDate date) {
        const auto flights = inventory.flights({u"OSL"_s, u"LHR"_s, date}, 1);
        return std::any_of(flights.begin(), flights.end(), [](const standin::Flight& flight) {
            return !flight.isPartner && flight.hasSeats();
        });
    };
    QDate first = from;
    for (QDate date = from; date < first.addDays(days); date = date.addDays(1)) {
        if (!hasOffer(date))
            first = date.addDays(1);
    }
    return first;
}

qsizetype soldOutRecords(Hunter& hunter) {
    const auto matches = hunter.database.offers().recentMatches(100'000);
    return std::count_if(matches.begin(), matches.end(), Hits::isSoldOut);
}

// --- A first round

/// By the day of departure, which the second line of the body begins with.
std::optional<QDate> dateOf(const NotificationLog::Arrival& arrival, QDate first) {
    const QString day = arrival.body.section(u'\n', 1).left(5);
    for (int i = 0; i < manyDates; ++i) {
        if (first.addDays(i).toString(u"dd.MM"_s) == day)
            return first.addDays(i);
    }
    return std::nullopt;
}

QList<Result> measureFirstRound() {
    Scene scene(150ms);
    NotificationLog desktop;
    Hunter hunter(scene.folder.path(), scene.airline);
    const QDate first = hunter.clock.today().addDays(10);
    hunter.watch(first, manyDates);
    const TimePoint start = SteadyClock::now();
    const PollSummary summary = hunter.round();
    const double whole = secondsFrom(start, SteadyClock::now());
    QList<double> delays;
    for (const NotificationLog::Arrival& arrival : desktop.take(summary.newAlerts)) {
        const auto date = dateOf(arrival, first);
        if (!date)
            qFatal("a notification about no date: %s", qPrintable(arrival.body));
        delays.append(secondsFrom(answeredAt(scene.airline, *date), arrival.at));
    }
    if (delays.isEmpty() || delays.size() != summary.newAlerts)
        qFatal("%d finds and %d notifications", summary.newAlerts, int(delays.size()));
    const double middle = median(delays);
    return {{u"the %1 finds of a first round of %2 dates (%3): from answer to notification, "
             u"median (worst %4)"_s.arg(delays.size())
                 .arg(manyDates)
                 .arg(inSeconds(whole),
                      u"%1 s"_s.arg(*std::max_element(delays.begin(), delays.end()), 0, 'f', 3)),
             u"%1 s"_s.arg(middle, 0, 'f', 3), u"< 0.2 s"_s, middle < 0.2}};
}

QList<Result> measureSharedDates() {
    Scene scene;
    const NotificationLog desktop;
    Hunter hunter(scene.folder.path(), scene.airline);
    const QDate first = hunter.clock.today().addDays(10);
    hunter.watch(first, manyDates);
    hunter.watch(first, manyDates);
    hunter.watch(hunter.clock.today().addDays(-manyDates), manyDates - 1);
    const PollSummary summary = hunter.round();
    if (summary.searches != 2 || !summary.errors.isEmpty() || !summary.notes.isEmpty())
        qFatal("not a whole round: %s", qPrintable((summary.errors + summary.notes).join(u' ')));
    return {count(
        u"looks made for two watchers of the same %1 dates and one whose dates are past"_s.arg(
            manyDates),
        scene.looks({u"OSL-LHR-"_s}), manyDates)};
}

// --- An airline in trouble

struct Trouble {
    /// As tindra-standin's --misbehave takes it.
    QString word;
    /// It asks to be left alone: nobody may sign in.
    bool isRefusal = false;
    /// At one of the dates only; those take a minute each.
    bool isSlow = false;
};

QList<Result> measureTrouble(const Trouble& trouble) {
    constexpr int days = 2;
    Scene scene;
    const NotificationLog desktop;
    Hunter hunter(scene.folder.path(), scene.airline);
    const QDate first = daysWithOffers(hunter.clock.today().addDays(10), days);
    hunter.watch(first, days);
    if (hunter.round().newAlerts < days)
        qFatal("the first round found nothing");
    // Whoever may sign in by program has all that it takes.
    if (trouble.isRefusal) {
        hunter.database.settings().set(Setting::autoLogin, true);
        ended(hunter.keychain.save(u"demo@tindra.example"_s, u"demo"_s));
        if (!ended(hunter.keychain.load()))
            qFatal("the keychain takes nothing");
    }
    scene.signOutEverywhere();
    const auto misbehaviour = Misbehaviour::of(trouble.word);
    if (!misbehaviour)
        qFatal("the stand-in knows nothing of %s", qPrintable(trouble.word));
    scene.airline.misbehave(trouble.isSlow ? legKey(first) : u"*"_s, *misbehaviour);
    const qsizetype before = scene.signInRequests();
    const PollSummary summary = hunter.round();
    const QString said = (summary.errors + summary.notes).join(u' ');
    QList<Result> rows{count(u"sold-outs when %1 is answered by `%2` («%3»)"_s.arg(
                                 trouble.isSlow ? u"one of the dates"_s : u"all"_s, trouble.word,
                                 said.isEmpty() ? u"nothing said"_s : said),
                             soldOutRecords(hunter), 0)};
    rows.last().reached = rows.last().reached && !said.isEmpty();
    if (!trouble.isRefusal)
        return rows;
    // What the program and its user do next must not lead to a sign-in either.
    ended(hunter.engine.verifyLogin());
    hunter.round();
    const standin::Counters counters = scene.airline.counters();
    const bool says = said.contains(u"SAS ber oss vente"_s);
    rows.append({u"  sign-ins tried; requests to /auth/ and the identity provider%1"_s.arg(
                     says ? u""_s : u"; does NOT say «SAS ber oss vente»"_s),
                 u"%1; %2"_s.arg(counters.passwordSignIns + counters.rejectedPasswords)
                     .arg(scene.signInRequests() - before),
                 u"0; 0"_s,
                 says && counters.passwordSignIns + counters.rejectedPasswords == 0 &&
                     scene.signInRequests() == before});
    return rows;
}

/// That the measure above would see a sold-out.
QList<Result> measureSoldOut() {
    Scene scene;
    const NotificationLog desktop;
    Hunter hunter(scene.folder.path(), scene.airline);
    hunter.watch(daysWithOffers(hunter.clock.today().addDays(10), 2), 10);
    hunter.round();
    const PollSummary summary = hunter.round();
    const qsizetype records = soldOutRecords(hunter);
    return {{u"sold-outs when the seats are gone"_s, QString::number(records), u"≥ 1"_s,
             records >= 1 && records == summary.soldOut}};
}

QList<Result> measureDeadSession() {
    Scene scene;
    const NotificationLog desktop;
    int pagesAtProvider = 0;
    TimePoint second{};
    // The looks' own: pages that the renewal loads come without a new one.
    const auto count = [&](const QUrl& url) {
        const int now = scene.airline.counters().signInPages;
        if (url.host() == scene.airline.idpHost() && now > std::exchange(pagesAtProvider, now) &&
            now == 2)
            second = SteadyClock::now();
    };
    Hunter hunter(scene.folder.path(), scene.airline, [&count](WebView& view) {
        QObject::connect(&view, &WebView::pageArrived, &view, count);
    });
    hunter.watch(hunter.clock.today().addDays(10), 5);
    if (!hunter.round().errors.isEmpty() || pagesAtProvider != 0)
        qFatal("the first round was not signed in");
    scene.signOutEverywhere();
    scene.airline.misbehave(u"*"_s, {.kind = Misbehaviour::Kind::Idp});
    TimePoint out{};
    QObject::connect(&hunter.state, &SessionState::loginStatusChanged, &hunter.state, [&] {
        if (hunter.state.loginStatus().isLoggedOut() && out == TimePoint{})
            out = SteadyClock::now();
    });
    const qsizetype before = scene.signInRequests();
    const PollSummary summary = hunter.round();
    // What the refusals above must not lead to does happen here.
    if (scene.signInRequests() == before)
        qFatal("nobody tried to renew a dead session");
    if (second == TimePoint{} || out == TimePoint{})
        qFatal("a dead session was not noticed: %s", qPrintable(summary.errors.join(u' ')));
    const double seconds = secondsFrom(second, out);
    return {{u"a dead session: from the second page at the identity provider to «signed out»"_s,
             inSeconds(seconds), u"< 15 s"_s, seconds < 15}};
}

// --- The keychain

/// From the beginning of a round to the first page of the watcher's.
double secondsToFirstLook(Scene& scene) {
    TimePoint first{};
    const auto note = [&first](const QUrl& url) {
        if (first == TimePoint{} && url.toString().contains(u"OSL-LHR-"_s))
            first = SteadyClock::now();
    };
    Hunter hunter(scene.folder.path(), scene.airline, [&note](WebView& view) {
        QObject::connect(&view, &WebView::navigating, &view, note);
    });
    if (hunter.database.watchers().listSearches().isEmpty())
        hunter.watch(hunter.clock.today().addDays(10), 1);
    const TimePoint start = SteadyClock::now();
    const PollSummary summary = hunter.round();
    if (first == TimePoint{} || !summary.errors.isEmpty())
        qFatal("a round without a look: %s", qPrintable(summary.errors.join(u' ')));
    return secondsFrom(start, first);
}

QList<Result> measureLockedKeychain(TestBus& bus) {
    constexpr int repeats = 3;
    Scene scene;
    const NotificationLog desktop;
    MutePrompter prompter;
    // Something to put back into the browser.
    secondsToFirstLook(scene);
    QList<double> open;
    for (int i = 0; i < repeats; ++i)
        open.append(secondsToFirstLook(scene));
    if (prompter.prompts() != 0 || !bus.lockSecretService())
        qFatal("the keychain was not open, or cannot be locked");
    QList<double> locked;
    for (int i = 0; i < repeats; ++i) {
        locked.append(secondsToFirstLook(scene));
        if (prompter.prompts() == 0)
            qFatal("the keychain was not asked");
    }
    prompter.refuse();
    const double more = median(locked) - median(open);
    return {{u"the first look is later when the keychain is locked (%1 instead of %2)"_s.arg(
                 inSeconds(median(locked)), inSeconds(median(open))),
             inSeconds(more), u"≤ 1 s"_s, more < 1.05}};
}

} // namespace

QList<Result> measureStream(TestBus& bus) {
    if (!bus.startSecretService())
        qFatal("no Secret Service");
    QList<Result> results = measureFirstRound();
    results += measureSharedDates();
    results += measureSoldOut();
    const Trouble troubles[] = {
        {u"errors"_s},         {u"wrongshape"_s},       {u"malformed"_s},
        {u"cutoff"_s},         {u"status:500"_s},       {u"redirects"_s},
        {u"unauthorized"_s},   {u"signin"_s},           {u"idp"_s},
        {u"message"_s, true},  {u"status:429"_s, true}, {u"status:403:120"_s, true},
        {u"page:503"_s, true}, {u"denied"_s, true},     {u"never"_s, false, true},
    };
    for (const Trouble& trouble : troubles)
        results += measureTrouble(trouble);
    results += measureDeadSession();
    results += measureLockedKeychain(bus);
    bus.stopSecretService();
    return results;
}
