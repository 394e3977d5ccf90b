// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Reads the data file into a Catalog. The file's own head explains its format.
#pragma once

#include "base/Result.h"
#include "directory/Catalog.h"
#include "directory/YamlEntry.h"

#include <string>

namespace directory {

/// Files beyond this size are refused.
constexpr std::size_t MaxDataFile = std::size_t(16) * 1024 * 1024;

/// The error is the first mistake, with its line.
Result<Catalog, DataError> parseCatalog(const std::string &yaml);
/// The same; line 0 when the file cannot be read.
Result<Catalog, DataError> loadCatalog(const std::string &file);

} // namespace directory
