// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/SpokenExcuses.h"

#include <QUrl>

/// What to play.
struct StreamSource {
    QUrl url;
    /// A station, which has no end: when the connection ends, the player reconnects.
    bool live = true;
    /// The caller can play something else instead: given up on the first failure before any sound.
    bool hasAlternatives = false;
    /// Addresses that are not played, also when a redirect leads there.
    SpokenExcuses excuses = {};
};
