#include "api/web/VeskJson.h"
#include "bench/Answers.h"
#include "bench/Plugin.h"
#include "modules/tunein/TuneInBrowseNode.h"

#include <benchmark/benchmark.h>

namespace {

/// Turns an answer of so many stations, read before, into rows. The worker lives on this thread, so
/// that the CPU time counted is the worker's.
void measureRows(benchmark::State &state, const QByteArray &answer)
{
    const int count = static_cast<int>(state.range(0));
    VeskError error;
    const VeskTuneInResponse response(VeskJson::parse(answer, error).toHash());
    const Surroundings surroundings;
    QVariantHash config;
    const std::unique_ptr<CMTuneInWorker> worker(
        static_cast<CMTuneInWorker *>(worker_create("tunein", &config)));
    spinUntil([&worker] { return worker->networkStateConnected(); });

    auto *node = static_cast<TuneInBrowseNode *>(
        worker->nodes()->find(CMPath::fromEncoded(QStringLiteral("TuneIn:browse"))));
    const CMGetRowsRequest request(
        CMPath::fromEncoded(QStringLiteral("TuneIn:browse/uri/Browse.ashx?id=g1")), pageRoles(), 0,
        count, CMReply<QVariant>(std::make_shared<CMReplyData<QVariant>>()));
    const VeskUrl url(QStringLiteral("http://opml.radiotime.com/Browse.ashx?id=g1"));
    for (auto _ : state) {
        const QVariantList filled = node->fillRows(request, response.body(), url, QString(), 1);
        if (filled.size() != count)
            state.SkipWithError("the rows are not all there");
    }
    state.counters["us_per_row"] = benchmark::Counter(static_cast<double>(count) * 1e-6,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void rows(benchmark::State &state)
{
    measureRows(state, stationsAnswer(static_cast<int>(state.range(0))));
}

void shortRows(benchmark::State &state)
{
    measureRows(state, shortStationsAnswer(static_cast<int>(state.range(0))));
}

BENCHMARK(rows)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(shortRows)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
