// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "bench/Answers.h"
#include "bench/Latency.h"
#include "bench/Plugin.h"
#include "plugin/link/Message.h"

#include <benchmark/benchmark.h>

namespace {

/// The response to a request for all rows of a screen of 1 MB.
ResponseMessage longAnswer()
{
    PluginOnThread plugin;
    ResponseMessage message;
    message.id = 1;
    message.value = answerTo([](const CMReply<QVariant> &reply) {
        return CMGetRowsRequest(
            CMPath::fromEncoded(QStringLiteral("TuneIn:browse/uri/Browse.ashx?id=g1")), pageRoles(),
            0, 9999, reply);
    });
    return message;
}

void writeLongAnswer(benchmark::State &state)
{
    const ResponseMessage answer = longAnswer();
    int size = 0;
    for (auto _ : state)
        size = encode(answer).size();
    state.counters["bytes"] = size;
}

void readLongAnswer(benchmark::State &state)
{
    const QByteArray payload = encode(longAnswer());
    for (auto _ : state) {
        const auto answer = decode<ResponseMessage>(payload);
        if (!answer)
            state.SkipWithError("the answer cannot be read");
    }
}

/// Measures the round trip of a request that the worker completes immediately.
void measurePing(benchmark::State &state)
{
    const CMPath root(QStringLiteral("TuneIn"), QString());
    measureLatency(state, [&root] {
        answerTo([&root](const CMReply<QVariant> &reply) {
            return CMSetDataRequest(root, CMPingRole(), 1, reply);
        });
    });
}

void ping(benchmark::State &state)
{
    PluginOnThread plugin;
    measurePing(state);
}

void pingPluginProcess(benchmark::State &state)
{
    PluginInProcess plugin;
    measurePing(state);
}

BENCHMARK(ping)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(pingPluginProcess)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(writeLongAnswer)->Unit(benchmark::kMillisecond);
BENCHMARK(readLongAnswer)->Unit(benchmark::kMillisecond);

} // namespace
