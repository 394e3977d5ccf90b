#include "api/web/VeskJson.h"
#include "bench/Answers.h"
#include "bench/Plugin.h"
#include "modules/tunein/TuneInBrowseNode.h"

#include <benchmark/benchmark.h>

namespace {

/// Reads answers of \a count stations into rows on the worker's thread. With \a parse the clock
/// runs while the JSON is read as well; without it the time of reading is taken off.
void rows(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    const QByteArray data = stationsAnswer(count);
    Plugin plugin;
    plugin.call([&] {
        auto *node = static_cast<TuneInBrowseNode *>(plugin.worker()->nodes()->find(
            CMPath(QStringLiteral("TuneIn"), QStringLiteral("browse"))));
        const CMPath screen
            = CMPath::fromEncoded(QStringLiteral("TuneIn:browse/uri/Browse.ashx?id=g1"));
        const VeskUrl url(QStringLiteral("http://opml.radiotime.com/Browse.ashx?id=g1"));
        const CMGetRowsRequest request(screen, pageRoles(), 0, count,
            CMReply<QVariant>(std::make_shared<CMReplyData<QVariant>>()));
        VeskError error;
        const VeskTuneInResponse response(VeskJson::parse(data, error).toHash());
        for (auto _ : state) {
            const QVariantList filled = node->fillRows(request, response.body(), url, QString(), 1);
            if (filled.size() != count)
                state.SkipWithError("the rows are not all there");
        }
    });
    state.counters["us_per_row"] = benchmark::Counter(static_cast<double>(count) * 1e-6,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(rows)->Arg(100)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
