// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

#include <chrono>
#include <functional>

/// Where episodes were left, so that they go on there when they are played again. Main thread.
class EpisodePlaces {
public:
    using Milliseconds = std::chrono::milliseconds;
    /// Neither so close to the beginning nor so close to the end is a place worth keeping.
    static constexpr Milliseconds Beginning {30000};
    static constexpr Milliseconds End {60000};

    virtual ~EpisodePlaces() = default;

    /// Calls \a found once, perhaps before it returns: with the place that is kept for the row \a
    /// path, or zero.
    virtual void find(const CMPath &path, std::function<void(Milliseconds)> found) = 0;
    /// Keeps a place, in the order of the calls.
    virtual void keep(const CMPath &path, Milliseconds place) = 0;
    virtual void forget(const CMPath &path) = 0;
};
