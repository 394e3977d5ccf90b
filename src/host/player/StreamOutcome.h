// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <chrono>

/// How it ended with one address of a stream.
struct StreamOutcome {
    enum Kind {
        Ended, ///< All of it was played; there is no more.
        Broken, ///< It cannot be had, or no longer; trying again may help.
        Refused, ///< Trying this address again will not help; another one may.
        Hopeless, ///< Nothing will help.
        Stopped, ///< By the user, or because time is up.
    };
    Kind kind = Broken;
    TrString problem;
    /// How long the server wants to be left alone.
    std::chrono::milliseconds retryAfter {0};
};
