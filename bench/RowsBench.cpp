// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"
#include "bench/Answers.h"
#include "bench/Plugin.h"
#include "modules/tunein/TuneInBrowseNode.h"

#include <benchmark/benchmark.h>

#include <ctime>

namespace {

/// The CPU time of the calling thread in milliseconds.
double threadMilliseconds()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// Measures the conversion of \a answer, already parsed, into rows; state.range(0) is the number of
/// its stations, \a asked that of the rows that are asked for. Counters: "cpu_ms", the CPU time of
/// the worker's thread, and "us_per_row".
void measureRows(benchmark::State &state, const QByteArray &answer, int asked)
{
    const int count = static_cast<int>(state.range(0));
    VeskError error;
    const VeskTuneInResponse response(VeskJson::parse(answer, error).toHash());
    PluginOnThread plugin;
    TuneInBrowseNode *node = nullptr;
    plugin.call([&] {
        node = static_cast<TuneInBrowseNode *>(
            plugin.worker()->nodes()->find(CMPath::fromEncoded(QStringLiteral("TuneIn:browse"))));
    });
    const CMGetRowsRequest request(
        CMPath::fromEncoded(QStringLiteral("TuneIn:browse/uri/Browse.ashx?id=g1")), pageRoles(), 0,
        asked - 1, CMReply<QVariant>(std::make_shared<CMReplyData<QVariant>>()));
    const VeskUrl url(QStringLiteral("http://opml.radiotime.com/Browse.ashx?id=g1"));
    int size = 0;
    const auto fill
        = [&] { size = node->fillRows(request, response.body(), url, QString(), 1).size(); };
    plugin.call(fill); // reads the genres
    double milliseconds = 0;
    for (auto _ : state) {
        plugin.call([&] {
            const double start = threadMilliseconds();
            fill();
            milliseconds += threadMilliseconds() - start;
        });
    }
    if (size != count)
        state.SkipWithError("the rows are not all there");
    using benchmark::Counter;
    state.counters["cpu_ms"] = Counter(milliseconds, Counter::kAvgIterations);
    state.counters["us_per_row"] = Counter(milliseconds * 1e3 / count, Counter::kAvgIterations);
}

void rows(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    measureRows(state, stationsAnswer(count), count);
}

/// The first hundred of all.
void pageOfRows(benchmark::State &state)
{
    measureRows(state, stationsAnswer(static_cast<int>(state.range(0))), 100);
}

void shortRows(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    measureRows(state, shortStationsAnswer(count), count);
}

BENCHMARK(rows)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(pageOfRows)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(shortRows)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
