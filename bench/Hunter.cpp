// SPDX-License-Identifier: MIT
#include "bench/Hunter.h"

#include "core/DateFmt.h"
#include "platform/linux/LinuxFolders.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

std::unique_ptr<WebKitRuntime> theWebKit;

std::unique_ptr<WebKitView> makeView(Clock& clock, const Hunter::Beginning& beginning) {
    auto view = webKit().makeView(clock);
    if (beginning)
        beginning(*view);
    return view;
}

} // namespace

WebKitRuntime& webKit() {
    if (!theWebKit) {
        QString problem;
        theWebKit = WebKitRuntime::start(LinuxFolders(u"Tindra"_s), problem);
        if (!theWebKit)
            qFatal("%s", qPrintable(problem));
        qAddPostRoutine([] { theWebKit.reset(); });
    }
    return *theWebKit;
}

void ended(QCoro::Task<> task) {
    const auto whole = [](QCoro::Task<> inner) -> QCoro::Task<bool> {
        co_await inner;
        co_return true;
    };
    ended(whole(std::move(task)));
}

Hunter::Hunter(const QString& folder, const standin::StandIn& airline, const Beginning& beginning)
    : database(folder, clock)
    , site{airline.siteOrigin(), airline.siteDomain(), airline.idpHost(), airline.idpDomain()}
    , view(makeView(clock, beginning))
    , window(*view, {SignInWindow::title(), SignInWindow::instruction(), SignInWindow::button()})
    , notifications(QDBusConnection::sessionBus())
    , community(database.settings(), network, clock, site, Community::builtInBaseAddress()) {
    QObject::connect(&state, &SessionState::signedOut, &notifier, &Notifier::notifySignedOut);
    QObject::connect(&worker, &Worker::idle, &worker, [this] { database.keepDailyCopy(); });
    notifier.requestPermission();
    notifier.tellRest();
    const auto cookies = ended(view->cookies().all());
    if (!cookies)
        qFatal("the browser's cookies cannot be read");
    for (const WebCookie& cookie : *cookies)
        ended(view->cookies().remove(cookie));
}

Hunter::~Hunter() {
    ended(session.saved(5s));
}

void Hunter::watch(QDate first, int days) {
    Search search;
    search.origin = u"OSL"_s;
    search.destination = u"LHR"_s;
    search.cabins = {Cabin::economy, Cabin::premeco, Cabin::business};
    search.dateFrom = first;
    search.dateTo = first.addDays(days - 1);
    database.watchers().addSearch(search);
}

QString legKey(QDate date) {
    return u"OSL-LHR-"_s + date.toString(u"yyyyMMdd"_s);
}

std::chrono::steady_clock::time_point answeredAt(const standin::StandIn& airline, QDate date) {
    const QString key = legKey(date);
    if (!QTest::qWaitFor([&] { return airline.answeredAt(key).has_value(); }, 5000))
        qFatal("%s was not answered", qPrintable(key));
    return *airline.answeredAt(key);
}
