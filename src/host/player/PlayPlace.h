// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <chrono>
#include <optional>

/// Where a play is, and where it can go. A value.
struct PlayPlace {
    using Milliseconds = std::chrono::milliseconds;

    /// In a file, of what is heard; none for a station, and before the file began.
    std::optional<Milliseconds> position;
    std::optional<Milliseconds> duration;
    bool isSeekable = false;
    /// Why it is not, if that is known: a text for the user.
    TrString refusal;
    /// How far behind live a station is that was paused.
    Milliseconds behind {0};
};
