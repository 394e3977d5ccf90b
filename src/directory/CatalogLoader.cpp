// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/CatalogLoader.h"

#include "directory/CatalogReader.h"

#include <fstream>

namespace directory {

Result<Catalog, DataError> parseCatalog(const std::string &yaml)
{
    try {
        return CatalogReader().load(YAML::Load(yaml));
    } catch (const DataError &error) {
        return ::failure(error);
    } catch (const YAML::Exception &error) {
        return ::failure(DataError(error.mark.line + 1, error.msg));
    }
}

Result<Catalog, DataError> loadCatalog(const std::string &file)
{
    std::ifstream in(file, std::ios::binary);
    std::string text;
    char buffer[65536];
    while (in.read(buffer, sizeof buffer) || in.gcount() > 0) {
        text.append(buffer, static_cast<std::size_t>(in.gcount()));
        if (text.size() > MaxDataFile)
            return ::failure(DataError(0, "the file is too large"));
    }
    if (!in.eof())
        return ::failure(DataError(0, "the file cannot be read"));
    return parseCatalog(text);
}

} // namespace directory
