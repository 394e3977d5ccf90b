// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskRowsRoles.h"
#include "bench/Answers.h"
#include "bench/Latency.h"
#include "bench/Plugin.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInHttpClient.h"

#include <curl/curl.h>

#include <QJsonDocument>

namespace {

size_t append(char *data, size_t size, size_t count, void *body)
{
    static_cast<QByteArray *>(body)->append(data, static_cast<int>(size * count));
    return size * count;
}

/// The floor: a blocking GET with libcurl alone.
void getFloor(benchmark::State &state)
{
    PluginOnThread plugin;
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
    PluginOnThread plugin;
    const VeskUrl url = TuneInApi::url(QStringLiteral("/Browse.ashx"));
    QByteArray body;
    measureLatency(state, [&] { plugin.worker()->httpClient()->get(url, &body); });
    if (body != rootAnswer())
        state.SkipWithError("the answer did not come");
}

/// Measures requests for all \a expected rows of the screen at \a path.
void measureGetRows(benchmark::State &state, const char *path, int expected)
{
    const CMPath screen = CMPath::fromEncoded(QLatin1String(path));
    int count = 0;
    measureLatency(state, [&] {
        const QVariant answer = answerTo([&](const CMReply<QVariant> &reply) {
            return CMGetRowsRequest(screen, pageRoles(), 0, expected - 1, reply);
        });
        count = VeskRowsRoles(answer.toHash()).rows().size();
    });
    if (count != expected)
        state.SkipWithError("the rows did not come");
}

constexpr char Root[] = "TuneIn:browse";
constexpr int LongScreenStations = 1800;
constexpr char LongScreen[] = "TuneIn:browse/uri/Browse.ashx?id=g1";

void getRowsOfRoot(benchmark::State &state)
{
    PluginOnThread plugin;
    measureGetRows(state, Root, 8);
}

void getRowsOfRootFromPluginProcess(benchmark::State &state)
{
    PluginInProcess plugin;
    measureGetRows(state, Root, 8);
}

void getRowsOfLongScreen(benchmark::State &state)
{
    PluginOnThread plugin;
    measureGetRows(state, LongScreen, LongScreenStations);
}

/// What a client needs to draw the screen.
void getFirstRowsOfLongScreen(benchmark::State &state)
{
    PluginOnThread plugin;
    measureGetRows(state, LongScreen, 100);
}

/// Its floor: Qt's parser, without the exchange.
void longScreenFloor(benchmark::State &state)
{
    const QByteArray data = stationsAnswer(LongScreenStations);
    measureLatency(
        state, [&] { benchmark::DoNotOptimize(QJsonDocument::fromJson(data).toVariant()); });
}

void getRowsOfLongScreenFromPluginProcess(benchmark::State &state)
{
    PluginInProcess plugin;
    measureGetRows(state, LongScreen, LongScreenStations);
}

BENCHMARK(getFloor)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(getThroughClient)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(getRowsOfRoot)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(getRowsOfRootFromPluginProcess)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(getRowsOfLongScreen)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(getFirstRowsOfLongScreen)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(longScreenFloor)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(getRowsOfLongScreenFromPluginProcess)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
