// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInResponse.h"
#include "api/web/VeskJson.h"
#include "bench/Answers.h"

#include <benchmark/benchmark.h>

#include <QJsonDocument>

namespace {

constexpr int Stations = 2000;

/// The floor: Qt's parser, without the model.
void jsonFloor(benchmark::State &state)
{
    const QByteArray data = stationsAnswer(Stations);
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(data).toVariant());
    state.counters["bytes"] = data.size();
}

void jsonToModel(benchmark::State &state)
{
    const QByteArray data = stationsAnswer(Stations);
    for (auto _ : state) {
        VeskError error;
        const VeskTuneInResponse response(VeskJson::parse(data, error).toHash());
        if (response.body().size() != Stations)
            state.SkipWithError("the answer was not read");
    }
}

BENCHMARK(jsonFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(jsonToModel)->Unit(benchmark::kMillisecond);

} // namespace
