// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/Trial.h"

#include <string>
#include <vector>

/// \file
/// The results of the trials as Markdown.

/// A table with a row for each fault.
std::string tableOf(const std::vector<Result> &results);
/// One line.
std::string lineOf(const Result &result);

struct Goal {
    std::string name;
    std::string measured;
    bool reached;
};

/// The goals over all faults, as far as the trials that ran allow.
std::vector<Goal> goalsOf(const std::vector<Result> &results);
