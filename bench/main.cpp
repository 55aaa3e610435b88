// SPDX-License-Identifier: MIT
// Measures what docs/performance.md promises, each against something measured in the same run.
#include "bench/Results.h"
#include "tests/support/TestBus.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[]) {
    const TestBus world;
    const QCoreApplication application(argc, argv);
    QList<Result> results = measureLookups();
    results += measureRounds();
    results += measureMemory();
    results += measureCaptures();
    std::fputs(table(results).toUtf8().constData(), stdout);
    return 0;
}
