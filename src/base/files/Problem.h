// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <string>

namespace files {

/// What went wrong with a file.
struct Problem {
    /// The system's number for it; 0 when the system did not object.
    int error = 0;
    /// One line in words.
    std::string text;

    /// errno, in words after \a what.
    static Problem ofSystem(const std::string &what);
};

} // namespace files
