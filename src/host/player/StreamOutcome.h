// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <chrono>

/// The result of playing one address.
struct StreamOutcome {
    enum Kind {
        Ended, ///< everything was played
        Broken, ///< a fault that may pass: worth a retry
        Refused, ///< a fault that will not pass; another address may work
        Hopeless, ///< no address of the source will work
        Stopped, ///< by the user, or because the time is up
    };
    Kind kind = Broken;
    /// A text for the user about the fault.
    TrString problem;
    /// The server's Retry-After; zero without one.
    std::chrono::milliseconds retryAfter {0};
};
