// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Reads the data file into a Catalog. The file's own head explains its format.
#pragma once

#include "directory/Catalog.h"
#include "directory/YamlEntry.h"

#include <string>

namespace directory {

/// Files beyond this size are refused.
constexpr std::size_t maxDataFile = std::size_t(16) * 1024 * 1024;

/// Throws DataError with the line of the first mistake.
Catalog parseCatalog(const std::string &yaml);
/// As parseCatalog; line 0 when the file cannot be read.
Catalog loadCatalog(const std::string &file);

} // namespace directory
