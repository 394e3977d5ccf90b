// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/Fault.h"

#include <QString>

#include <string>
#include <vector>

/// The measurements, in seconds; -1 where there was nothing to measure.
struct Figures {
    double toSound = -1;
    double silence = -1; ///< the longest after the first sound
    double falsePlaying = 0; ///< the longest "playing" without samples
    double noticed = -1; ///< the longest from a fault to the next connection or message
    double stopped = -1; ///< until the play was over
    double slowestAnswer = 0;
    double megabytes = 0;
    int connects = 0;
    bool soundsAtEnd = false;
    std::vector<std::string> told; ///< errors and problems, in order
};

struct Result {
    const Fault *fault = nullptr;
    Figures figures;
    std::vector<std::string> failures; ///< expectations that were not met

    bool passed() const { return failures.empty(); }
};

/// Runs the trial of a fault and judges the result. Whatever the fault, the host must answer within
/// two seconds, report "playing" for at most three seconds without samples, use no more than 300 MB
/// with its children, then stop, play a healthy stream within five seconds, and end normally. The
/// host's log and the recording are in \a folder, which the caller keeps.
Result playOut(const Fault &fault, const QString &folder);
