// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtGlobal>

#include <functional>

/// The plug-in's clocks. Tests replace them, before a worker exists; after that any thread may read
/// them.
struct TuneInClock {
    /// Milliseconds of a clock that never steps (QElapsedTimer's).
    std::function<qint64()> monotonicMs;
    /// Milliseconds since the Unix epoch.
    std::function<qint64()> epochMs;

    static TuneInClock &instance();
};
