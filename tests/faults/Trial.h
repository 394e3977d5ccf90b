// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/Fault.h"

#include <QString>

#include <string>
#include <vector>

/// What was measured, in seconds; -1 where there is nothing to measure.
struct Figures {
    double toSound = -1;
    double silence = -1; ///< the longest after the first sound
    double falsePlaying = 0; ///< the longest "playing" without samples
    double noticed = -1; ///< the longest from a fault to the next connection or word
    double stopped = -1; ///< until the play was over
    double slowestAnswer = 0;
    double megabytes = 0;
    int connects = 0;
    bool soundsAtEnd = false;
    std::vector<std::string> told; ///< errors and problems, in their order
};

struct Result {
    const Fault *fault = nullptr;
    Figures figures;
    std::vector<std::string> failures; ///< what was expected and is not so

    bool passed() const { return failures.empty(); }
};

/// Plays a fault out and judges what came of it. Whatever the fault, the host must answer within
/// two seconds, say "playing" for at most three without samples, take no more than 300 MB with its
/// children, then stop, play a healthy stream within five seconds, and end in order. \a folder is
/// kept by the caller: the host's log and what was heard are in it.
Result playOut(const Fault &fault, const QString &folder);
