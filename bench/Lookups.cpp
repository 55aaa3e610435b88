// SPDX-License-Identifier: MIT
// Reading responses against simdjson's own parse, and airport lookups.
#include "airline/OfferParser.h"
#include "airports/Airports.h"
#include "bench/Results.h"
#include "standin/Answers.h"

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype ordinarySize = 570 * 1024;

QByteArray ordinaryBody() {
    // As many flights as a busy route shows in a day.
    const standin::Inventory inventory(1);
    QList<standin::Flight> flights;
    for (int look = 1; flights.size() < 60; ++look)
        flights += inventory.flights({u"OSL"_s, u"LHR"_s, QDate(2027, 3, look)}, 1);
    return standin::offersAnswer(flights, ordinarySize);
}

void parseOnly(benchmark::State& state, const QByteArray& body) {
    simdjson::dom::parser parser;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            parser.parse(body.constData(), static_cast<size_t>(body.size())).error());
}

void toFares(benchmark::State& state, const QByteArray& body) {
    OfferParser parser{Site()};
    for (auto _ : state)
        benchmark::DoNotOptimize(parser.parseOffers(body, {u"OSL"_s, u"LHR"_s}));
}

void searchAirports(benchmark::State& state) {
    const QStringList queries{u"os"_s,  u"tromso"_s, u"berg"_s,      u"new"_s,     u"xq"_s,
                              u"san"_s, u"a"_s,      u"københavn"_s, u"london g"_s};
    qsizetype next = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(Airports::search(queries[next++ % queries.size()], 6));
}

/// Keeps the best of a benchmark's repetitions, in microseconds.
class BestOf final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                const QString name = QString::fromStdString(run.run_name.function_name);
                best.insert(name,
                            std::min(best.value(name, 1e12), run.GetAdjustedRealTime() / 1000));
            }
        }
    }
    QMap<QString, double> best;
};

} // namespace

QList<Result> measureLookups() {
    const QByteArray body = ordinaryBody();
    benchmark::RegisterBenchmark("parse", parseOnly, body)->Repetitions(5);
    benchmark::RegisterBenchmark("fares", toFares, body)->Repetitions(5);
    benchmark::RegisterBenchmark("airports", searchAirports)->Repetitions(5);
    BestOf reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double ratio = reporter.best[u"fares"_s] / reporter.best[u"parse"_s];
    const double search = reporter.best[u"airports"_s];
    return {
        {u"%1 KiB response to fares, against simdjson's parse (%2 / %3 µs)"_s
             .arg(body.size() / 1024)
             .arg(reporter.best[u"fares"_s], 0, 'f', 0)
             .arg(reporter.best[u"parse"_s], 0, 'f', 0),
         QString::number(ratio, 'f', 2), u"≤ 1.7"_s, ratio <= 1.7},
        {u"one airport lookup"_s, u"%1 µs"_s.arg(search, 0, 'f', 1), u"< 60 µs"_s, search < 60}};
}
