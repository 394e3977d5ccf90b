#include "api/values/VeskRowsRoles.h"
#include "bench/Answers.h"
#include "bench/Latency.h"
#include "bench/Plugin.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInHttpClient.h"

#include <curl/curl.h>

namespace {

size_t append(char *data, size_t size, size_t count, void *body)
{
    static_cast<QByteArray *>(body)->append(data, static_cast<int>(size * count));
    return size * count;
}

void getFloor(benchmark::State &state)
{
    Plugin plugin;
    CURL *curl = curl_easy_init();
    QByteArray body;
    curl_easy_setopt(curl, CURLOPT_URL, plugin.surroundings().rootUrl().constData());
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    measureLatency(state, [&] {
        body.clear();
        curl_easy_perform(curl);
    });
    if (body != rootAnswer())
        state.SkipWithError("the answer did not come");
    curl_easy_cleanup(curl);
}

void getThroughClient(benchmark::State &state)
{
    Plugin plugin;
    const VeskUrl url = TuneInApi::url(QStringLiteral("/Browse.ashx"));
    QByteArray body;
    measureLatency(state, [&] { plugin.worker()->httpClient()->get(url, &body); });
    if (body != rootAnswer())
        state.SkipWithError("the answer did not come");
}

void getRowsOfRoot(benchmark::State &state)
{
    Plugin plugin;
    const CMPath path(QStringLiteral("TuneIn"), QStringLiteral("browse"));
    int count = 0;
    measureLatency(state, [&] {
        const auto reply = std::make_shared<CMReplyData<QVariant>>();
        CMRoot()->request(CMGetRowsRequest(path, pageRoles(), 0, 99, CMReply<QVariant>(reply)));
        count = VeskRowsRoles(reply->value().toHash()).rowsCount();
    });
    if (count != 8)
        state.SkipWithError("the menu did not come");
}

BENCHMARK(getFloor)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(getThroughClient)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(getRowsOfRoot)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
