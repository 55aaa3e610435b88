// SPDX-License-Identifier: MIT
// How long the watchers page takes to come up and to follow a round.
#include "bench/Results.h"
#include "tests/support/AppWorld.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/watchers/WatchersSection.h"

#include <QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int pageWatchers = 20;
constexpr int pageRepetitions = 10;

double milliseconds(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

} // namespace

QList<Result> measureWatchers() {
    AppWorld world;
    for (int i = 0; i < pageWatchers; ++i)
        world.addWatcher(u"EWR,JFK,BOS"_s, [i](Search& search) {
            search.name = u"Overvåker %1"_s.arg(i);
            search.returnDateTo = QDate(2027, 4, 30);
        });
    WatchersSection section(world.state, world.worker, world.database.watchers(), world.clock);
    PageWindow page("import QtQuick\nimport Tindra.Watchers\n"
                    "Loader { id: loader; required property WatchersSectionModel section\n"
                    "active: false; sourceComponent: WatchersPage { section: loader.section } }",
                    {{u"section"_s, QVariant::fromValue(&section)}}, {1120, 880});
    double shown = 1e9;
    double followed = 1e9;
    for (int i = 0; i < pageRepetitions; ++i) {
        page.root()->setProperty("active", false);
        settle();
        shown = std::min(shown, milliseconds([&page] {
                             page.root()->setProperty("active", true);
                             page.grab();
                         }));
        world.clock.advance(std::chrono::minutes(1));
        for (int id = 1; id <= pageWatchers; ++id)
            world.database.watchers().markChecked(id, i);
        followed = std::min(followed, milliseconds([&world] {
                                QCoreApplication::sendPostedEvents(&world.database);
                            }));
    }
    return {{u"The watchers page with %1 watchers, made and drawn"_s.arg(pageWatchers),
             u"%1 ms"_s.arg(shown, 0, 'f', 1), u"< 100 ms"_s, shown < 100},
            {u"A round's news on all of its cards"_s, u"%1 ms"_s.arg(followed, 0, 'f', 1),
             u"< 16 ms"_s, followed < 16}};
}
