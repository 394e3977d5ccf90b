// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "bench/Latency.h"
#include "bench/Plugin.h"

#include <QThread>

namespace {

/// The floor: starts a thread, calls a function on it and stops it.
void emptyThread(benchmark::State &state)
{
    measureLatency(state, [] {
        QThread thread;
        QObject object;
        object.moveToThread(&thread);
        thread.start();
        QMetaObject::invokeMethod(
            &object, [] {}, Qt::BlockingQueuedConnection);
        thread.quit();
        thread.wait();
    });
}

/// Measures creation only; the worker is destroyed outside the timed section.
void createWorker(benchmark::State &state)
{
    using Clock = std::chrono::steady_clock;
    Surroundings surroundings;
    std::vector<double> microseconds;
    for (auto _ : state) {
        double elapsed = 0;
        {
            WorkerThread thread([&elapsed] {
                QVariantHash config;
                const Clock::time_point start = Clock::now();
                auto *worker = static_cast<CMTuneInWorker *>(worker_create("tunein", &config));
                elapsed = std::chrono::duration<double>(Clock::now() - start).count();
                return worker;
            });
        }
        state.SetIterationTime(elapsed);
        microseconds.push_back(elapsed * 1e6);
    }
    const auto middle = microseconds.begin() + static_cast<long>(microseconds.size() / 2);
    std::nth_element(microseconds.begin(), middle, microseconds.end());
    state.counters["p50_us"] = *middle;
}

BENCHMARK(emptyThread)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(createWorker)->Unit(benchmark::kMicrosecond)->UseManualTime();

} // namespace
