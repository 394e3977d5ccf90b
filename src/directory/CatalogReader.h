// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Builds a Catalog from the root of the data file's YAML. Used by CatalogLoader alone; one object
/// reads one file, and throws DataError with the line of the first mistake.
#pragma once

#include "directory/Catalog.h"
#include "directory/YamlEntry.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace directory {

/// The names used in the file and the ids they stand for.
using Names = std::map<std::string, std::string>;

class CatalogReader {
public:
    Catalog load(const YAML::Node &root);

private:
    void claim(const YamlEntry &entry, const std::string &id);
    static std::string named(
        const YamlEntry &entry, const char *key, const std::string &name, const Names &names);
    static void menu(const YamlEntry &entry, std::string &out);

    void texts(const YamlEntry &root);
    void streamSets(const YamlEntry &root);
    void genre(const YAML::Node &node);
    void category(const YAML::Node &node);
    void language(const YAML::Node &node);
    void continent(const YAML::Node &node);
    void country(const YAML::Node &node, const std::string &parent);
    void area(const YAML::Node &node, const std::string &parent);
    void city(const YAML::Node &node, const std::string &parent);
    std::size_t addRegion(const YamlEntry &entry, Region::Kind kind, const std::string &parent);
    Stream stream(const YAML::Node &node);
    void station(const YAML::Node &node);
    void frequency(const YamlEntry &entry, Station &station);
    void show(const YAML::Node &node);
    Slot slot(const YAML::Node &node);
    void topics(const YamlEntry &entry, Show &show);
    void artist(const YAML::Node &node);
    void languageSample(const YAML::Node &node);
    void streamSample(const YAML::Node &node);
    void otherServer(const YAML::Node &node);

    Catalog m_catalog;
    std::set<std::string> m_ids;
    Names m_genres;
    Names m_languages;
    Names m_cities;
    Names m_cityLanguages;
    std::map<std::string, std::vector<Stream>> m_streamSets;
};

} // namespace directory
