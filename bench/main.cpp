// SPDX-License-Identifier: MIT
// Measures what docs/performance.md promises, each against something measured in the same run.
// Arguments choose subjects by name; without any, all are measured.
#include "bench/Results.h"
#include "tests/support/TestBus.h"
#include "tests/ui/support/PageWindow.h"

#include <QGuiApplication>

#include <cstdio>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

int main(int argc, char* argv[]) {
    TestBus world;
    PageWindow::prepare();
    const QGuiApplication application(argc, argv);
    const QStringList wanted = QCoreApplication::arguments().sliced(1);
    const std::pair<QString, std::function<QList<Result>()>> subjects[] = {
        {u"lookups"_s, measureLookups},   {u"rounds"_s, measureRounds},
        {u"telling"_s, measureTelling},   {u"state"_s, measureState},
        {u"memory"_s, measureMemory},     {u"captures"_s, measureCaptures},
        {u"watchers"_s, measureWatchers}, {u"hits"_s, measureHits},
        {u"window"_s, measureWindow},     {u"stream"_s, [&world] { return measureStream(world); }},
    };
    QList<Result> results;
    for (const auto& [name, measure] : subjects) {
        if (wanted.isEmpty() || wanted.contains(name))
            results += measure();
    }
    std::fputs(table(results).toUtf8().constData(), stdout);
    return 0;
}
