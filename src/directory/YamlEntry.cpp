// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/YamlEntry.h"

#include "directory/Query.h"

#include <algorithm>
#include <cstdlib>

namespace directory {

YamlEntry::YamlEntry(
    const YAML::Node &node, std::string kind, std::initializer_list<const char *> known)
    : m_node(node)
    , m_kind(std::move(kind))
{
    if (!m_node.IsMap())
        fail("a " + m_kind + " must be a mapping");
    for (const auto &item : m_node) {
        const std::string key = item.first.IsScalar() ? item.first.Scalar() : std::string();
        if (std::none_of(known.begin(), known.end(), [&key](const char *k) { return key == k; }))
            throw DataError(item.first.Mark().line + 1, m_kind + ": unknown key \"" + key + '"');
    }
}

int YamlEntry::line() const
{
    return m_node.Mark().line + 1;
}

void YamlEntry::fail(const std::string &message) const
{
    throw DataError(line(), m_kind + ": " + message);
}

bool YamlEntry::has(const char *key) const
{
    return m_node[key].IsDefined();
}

YAML::Node YamlEntry::child(const char *key) const
{
    if (!has(key))
        fail(std::string("\"") + key + "\" is missing");
    return m_node[key];
}

std::string YamlEntry::scalar(const YAML::Node &node, const char *key) const
{
    if (!node.IsScalar())
        throw DataError(
            node.Mark().line + 1, m_kind + ": \"" + key + "\" must be a text or a number");
    if (node.Scalar().size() > MaxText)
        throw DataError(node.Mark().line + 1, m_kind + ": \"" + key + "\" is too long");
    return node.Scalar();
}

std::string YamlEntry::text(const char *key) const
{
    std::string value = scalar(child(key), key);
    if (value.empty())
        fail(std::string("\"") + key + "\" is empty");
    return value;
}

std::string YamlEntry::text(const char *key, const std::string &fallback) const
{
    return has(key) ? scalar(m_node[key], key) : fallback;
}

double YamlEntry::real(const char *key, double low, double high) const
{
    const std::string value = text(key);
    char *end = nullptr;
    const double parsed = std::strtod(value.c_str(), &end);
    if (end != value.c_str() + value.size() || !(parsed >= low && parsed <= high))
        fail(std::string("\"") + key + "\" is no number in its range: " + value);
    return parsed;
}

int YamlEntry::number(const char *key, int low, int high) const
{
    const double value = real(key, low, high);
    if (value != static_cast<int>(value))
        fail(std::string("\"") + key + "\" must be a whole number");
    return static_cast<int>(value);
}

int YamlEntry::number(const char *key, int low, int high, int fallback) const
{
    return has(key) ? number(key, low, high) : fallback;
}

bool YamlEntry::flag(const char *key, bool fallback) const
{
    if (!has(key))
        return fallback;
    const std::string value = text(key);
    if (value != "yes" && value != "no")
        fail(std::string("\"") + key + "\" must be yes or no");
    return value == "yes";
}

std::string YamlEntry::id(const char *key, const std::string &prefix) const
{
    std::string value = text(key);
    const bool digits = value.size() > prefix.size() && value.size() <= prefix.size() + 12
        && std::all_of(value.begin() + static_cast<std::ptrdiff_t>(prefix.size()), value.end(),
            [](char c) { return c >= '0' && c <= '9'; });
    if (value.compare(0, prefix.size(), prefix) != 0 || !digits)
        fail(std::string("\"") + key + "\" must be " + prefix + " and digits: " + value);
    return value;
}

std::vector<std::string> YamlEntry::texts(const char *key) const
{
    std::vector<std::string> values;
    if (has(key))
        eachOf(key, [&](const YAML::Node &node) { values.push_back(scalar(node, key)); });
    return values;
}

void YamlEntry::eachOf(const char *key, const std::function<void(const YAML::Node &)> &visit) const
{
    const YAML::Node list = child(key);
    if (!list.IsSequence())
        throw DataError(list.Mark().line + 1, m_kind + ": \"" + key + "\" must be a list");
    if (list.size() > MaxItems)
        throw DataError(list.Mark().line + 1, m_kind + ": \"" + key + "\" has too many entries");
    for (const auto &node : list)
        visit(node);
}

} // namespace directory
