// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Reads one mapping of a YAML file strictly: wrong types, missing or unknown keys and long texts
/// are errors, with the line. Lives only while the file is loaded; throws DataError, as yaml-cpp
/// throws its own exceptions.
#pragma once

#include <yaml-cpp/yaml.h>

#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

namespace directory {

/// A mistake in the data file. `line` counts from 1; 0 means the file as a whole.
class DataError : public std::runtime_error {
public:
    DataError(int line, const std::string &message)
        : std::runtime_error(message)
        , m_line(line)
    {
    }
    int line() const { return m_line; }

private:
    int m_line;
};

class YamlEntry {
public:
    static constexpr std::size_t MaxText = 2000;
    static constexpr std::size_t MaxItems = 20000;

    /// `kind` names the entry in messages ("station"); keys other than `known` are a mistake.
    YamlEntry(const YAML::Node &node, std::string kind, std::initializer_list<const char *> known);

    int line() const;
    [[noreturn]] void fail(const std::string &message) const;

    std::string text(const char *key) const;
    std::string text(const char *key, const std::string &fallback) const;
    int number(const char *key, int low, int high) const;
    int number(const char *key, int low, int high, int fallback) const;
    double real(const char *key, double low, double high) const;
    bool flag(const char *key, bool fallback) const;
    /// A letter of `prefixes` and at most 12 digits.
    std::string id(const char *key, const std::string &prefix) const;
    std::vector<std::string> texts(const char *key) const;
    bool has(const char *key) const;
    YAML::Node child(const char *key) const;
    void eachOf(const char *key, const std::function<void(const YAML::Node &)> &visit) const;

private:
    std::string scalar(const YAML::Node &node, const char *key) const;

    YAML::Node m_node;
    std::string m_kind;
};

} // namespace directory
