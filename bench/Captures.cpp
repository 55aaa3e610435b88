// SPDX-License-Identifier: MIT
// Captures per second, against a bare view that loads the same pages.
#include "airline/Capture.h"
#include "airline/SAS.h"
#include "bench/BareView.h"
#include "bench/Results.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "standin/StandIn.h"

#include <QEventLoop>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int pages = 25;
constexpr int repeats = 5;

QString date(int day) {
    return QDate(2027, 3, 1).addDays(day).toString(u"yyyyMMdd"_s);
}

double secondsOf(const Clock& clock, const std::function<void()>& work) {
    const Ticks start = clock.ticks();
    work();
    return (clock.ticks() - start).count();
}

} // namespace

QList<Result> measureCaptures() {
    QString problem;
    const auto runtime = WebKitRuntime::start(LinuxFolders(u"Tindra"_s), problem);
    if (!runtime)
        qFatal("%s", qPrintable(problem));
    standin::Options options;
    options.pageDelay = 0ms;
    standin::StandIn airline(options);
    if (const auto error = airline.start())
        qFatal("%s", qPrintable(*error));
    const Site site{airline.siteOrigin(), airline.siteDomain(), airline.idpHost(),
                    airline.idpDomain()};
    LinuxClock clock;
    const auto view = runtime->makeView(clock);
    Capture capture(*view, clock, site);
    BareView bare;

    const auto captureAll = [&] {
        for (int day = 0; day < pages; ++day) {
            QEventLoop loop;
            capture.capture(u"OSL"_s, u"CPH"_s, date(day), false, 60s)
                .then([&loop](Capture::Body body) {
                    if (!body)
                        qFatal("a capture gave nothing");
                    loop.quit();
                });
            loop.exec();
        }
    };
    const auto loadAll = [&] {
        for (int day = 0; day < pages; ++day) {
            QEventLoop loop;
            bare.load(QUrl(SAS::bookingURL(site, u"OSL"_s, u"CPH"_s, date(day))),
                      [&loop] { loop.quit(); });
            loop.exec();
        }
    };
    // Once each to start the processes and warm the caches, then by turns.
    captureAll();
    loadAll();
    double ours = 1e9;
    double theirs = 1e9;
    for (int i = 0; i < repeats; ++i) {
        ours = std::min(ours, secondsOf(clock, captureAll));
        theirs = std::min(theirs, secondsOf(clock, loadAll));
    }
    const double ratio = theirs / ours;
    return {{u"captures per second, against a bare view (%1 / %2)"_s.arg(pages / ours, 0, 'f', 1)
                 .arg(pages / theirs, 0, 'f', 1),
             QString::number(ratio, 'f', 2), u"≥ 0.85"_s, ratio >= 0.85}};
}
