// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/Trial.h"

#include <string>
#include <vector>

/// \file
/// What the trials showed, for people: Markdown.

/// A table with a row for each fault.
std::string tableOf(const std::vector<Result> &results);
/// One line.
std::string lineOf(const Result &result);

struct Goal {
    std::string name;
    std::string measured;
    bool reached;
};

/// What all faults together must show, from the trials that were made.
std::vector<Goal> goalsOf(const std::vector<Result> &results);
