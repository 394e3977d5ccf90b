// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtGlobal>

#include <string>

/// The resources that a host and its child processes use.
struct Footprint {
    int hostKilobytes = 0; ///< resident
    int hostShare = 0; ///< proportional set size; 0 where the kernel does not report it
    int hostDescriptors = 0;
    int hostThreads = 0;
    int children = 0;
    int childrenKilobytes = 0;
    int childrenShare = 0;
    int childrenDescriptors = 0;
    int childrenThreads = 0;

    static Footprint of(qint64 pid);
    /// Comma-separated values, and their header line.
    std::string line() const;
    static std::string names();
};
