// SPDX-License-Identifier: MIT
// Measures what docs/performance.md promises, each against something measured in the same run.
#include "bench/Results.h"
#include "tests/support/TestBus.h"
#include "tests/ui/support/PageWindow.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char* argv[]) {
    const TestBus world;
    PageWindow::prepare();
    const QGuiApplication application(argc, argv);
    if (argc > 1) { std::fputs(table(measureHits()).toUtf8().constData(), stdout); return 0; }
    QList<Result> results = measureLookups();
    results += measureRounds();
    results += measureHits();
    results += measureMemory();
    results += measureCaptures();
    std::fputs(table(results).toUtf8().constData(), stdout);
    return 0;
}
