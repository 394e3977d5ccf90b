// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/SpokenExcuses.h"

#include <QByteArray>
#include <QUrl>

#include <chrono>

/// Where to begin in a file.
struct StreamStart {
    std::chrono::microseconds position {0}; ///< what is heard first
    /// The file in which that place was found; empty: it has to be found first.
    QUrl url = {};
    qint64 offset = 0; ///< of the place in the file, in bytes
    std::chrono::microseconds time {0}; ///< of the first sample that is decoded from there
    QByteArray head = {}; ///< what the decoder needs before
};

/// What to play.
struct StreamSource {
    QUrl url;
    /// A station, which has no end: when the connection ends, the player reconnects.
    bool live = true;
    /// The caller can play something else instead: given up on the first failure before any sound.
    bool hasAlternatives = false;
    /// Addresses that are not played, also when a redirect leads there.
    SpokenExcuses excuses = {};
    /// For a file.
    StreamStart start = {};
};
