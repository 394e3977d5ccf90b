// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// /_faults: lists (GET), adds (POST) and clears (DELETE) the faults of a running server.
#pragma once

#include "directory/Faults.h"

namespace directory {

constexpr char FaultControlPath[] = "/_faults";

/// The body of a POST is a fault per line, or a JSON list of them. Either all are taken or none.
Answer controlFaults(Faults &faults, const std::string &method, const std::string &body);

} // namespace directory
