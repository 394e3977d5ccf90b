// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

/// Measures each operation by itself; counter "p50_us" is the median in microseconds, which is more
/// meaningful than the mean on a shared machine.
template <class Operation>
void measureLatency(benchmark::State &state, Operation operation)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> microseconds;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        operation();
        microseconds.push_back(
            std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    const auto middle = microseconds.begin() + static_cast<long>(microseconds.size() / 2);
    std::nth_element(microseconds.begin(), middle, microseconds.end());
    state.counters["p50_us"] = *middle;
}
