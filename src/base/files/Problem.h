// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// What went wrong with a file. Contextually false when nothing did.
#pragma once

#include <string>

namespace files {

struct Problem {
    /// The system's number for it; 0 when it is not the system that objects.
    int error = 0;
    /// One line in words; empty when nothing went wrong.
    std::string text;

    explicit operator bool() const { return !text.empty(); }

    /// errno, in words behind \a what.
    static Problem ofSystem(const std::string &what);
};

} // namespace files
