// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "bench/Plugin.h"
#include "plugin/runtime/Logging.h"
#include "plugin/runtime/Memory.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <log4cplus/initializer.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

/// Prints the results and keeps them, so that they can be compared with their floors: CPU times
/// under the name of the benchmark, counters under "NAME:COUNTER".
class Collector : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const std::string name = run.run_name.function_name
                + (run.run_name.args.empty() ? "" : "/" + run.run_name.args);
            times[name].push_back(run.GetAdjustedCPUTime());
            for (const auto &counter : run.counters)
                times[name + ":" + counter.first].push_back(counter.second.value);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    double median(const std::string &name) const
    {
        const auto it = times.find(name);
        if (it == times.end())
            return 0;
        std::vector<double> values = it->second;
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }

private:
    std::map<std::string, std::vector<double>> times;
};

/// A figure and its floor, by their names in the Collector, and the limit of their ratio.
struct Ratio {
    const char *what;
    const char *measured;
    const char *floor;
    double limit;
};

constexpr Ratio Ratios[] = {
    {"JSON of 2,000 stations into the model", "jsonToModel", "jsonFloor", 0.45},
    {"that model into rows with the page's roles", "rows/2000:cpu_ms", "jsonFloor", 1.0},
    {"the same, of which 100 are asked for", "pageOfRows/2000:cpu_ms", "jsonFloor", 0.1},
    {"the first 100 rows of a 1 MB screen, fetched", "getFirstRowsOfLongScreen:p50_us",
        "longScreenFloor:p50_us", 0.6},
    {"a row at 10,000 rows, beside 100", "shortRows/10000:us_per_row", "shortRows/100:us_per_row",
        1.2},
    {"blocking GET of the root menu, p50", "getThroughClient:p50_us", "getFloor:p50_us", 2.2},
    {"getRows of the root through CMRoot(), p50", "getRowsOfRoot:p50_us", "getFloor:p50_us", 4.0},
    {"getRows of the root from a plug-in process, p50", "getRowsOfRootFromPluginProcess:p50_us",
        "getRowsOfRoot:p50_us", 1.35},
    {"getRows of a 1 MB screen from a plug-in process",
        "getRowsOfLongScreenFromPluginProcess:p50_us", "getRowsOfLongScreen:p50_us", 1.5},
    {"10,000 rows by pages of 100, beside all at once", "readScreenByPages:p50_us",
        "readScreenAtOnce:p50_us", 1.3},
    {"a second of sound, evenness on, beside its copy", "levelSecondOfSound/1", "copySecondOfSound",
        150},
    {"the same with evenness off", "levelSecondOfSound/0", "copySecondOfSound", 1.2},
};

void printRatios(const Collector &collector)
{
    std::printf("\n%-48s %12s %12s %8s %8s\n", "what", "measured", "floor", "ratio", "at most");
    for (const Ratio &ratio : Ratios) {
        const double measured = collector.median(ratio.measured);
        const double floor = collector.median(ratio.floor);
        if (measured > 0 && floor > 0)
            std::printf("%-48s %12.3f %12.3f %8.2f %8.2f\n", ratio.what, measured, floor,
                measured / floor, ratio.limit);
    }
    const double create = collector.median("createWorker:p50_us");
    const double thread = collector.median("emptyThread:p50_us");
    if (create > 0 && thread > 0)
        std::printf("%-48s %12.1f %12.1f %+7.2fms %6.2fms\n", "worker_create, p50 in us", create,
            thread, (create - thread) / 1000, 3.0);
}

} // namespace

int main(int argc, char **argv)
{
    setUpMemory();
    log4cplus::Initializer logging;
    if (!setUpLogging(QStringLiteral("error"), QString()))
        return 1;
    QCoreApplication application(argc, argv);
    if (argc == 2 && std::strcmp(argv[1], "--serve") == 0)
        return serveBenchmarks();
    std::vector<char *> arguments(argv, argv + argc);
    // Interleave the repetitions, so that other load on the machine affects both benchmarks of a
    // pair.
    std::string repetitions = "--benchmark_repetitions=5";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, interleaving.data());
    arguments.insert(arguments.begin() + 1, repetitions.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    printRatios(collector);
    return 0;
}
