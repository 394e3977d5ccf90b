// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtGlobal>

#include <functional>

/// The clocks by which the plug-in measures. Replace them, before there is a worker, to move time
/// in tests; read from any thread.
struct TuneInClock {
    /// Milliseconds of a clock that never steps (QElapsedTimer's).
    std::function<qint64()> monotonicMs;
    /// Milliseconds since the Unix epoch.
    std::function<qint64()> epochMs;

    static TuneInClock &instance();
};
