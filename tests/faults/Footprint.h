// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtGlobal>

#include <string>

/// What a host and the processes that it started take of the machine.
struct Footprint {
    int hostKilobytes = 0; ///< resident
    int hostShare = 0; ///< resident, each shared page counted in part; 0 where nobody tells
    int hostDescriptors = 0;
    int hostThreads = 0;
    int children = 0;
    int childrenKilobytes = 0;
    int childrenShare = 0;
    int childrenDescriptors = 0;
    int childrenThreads = 0;

    static Footprint of(qint64 pid);
    /// Comma-separated, and the names of that.
    std::string line() const;
    static std::string names();
};
