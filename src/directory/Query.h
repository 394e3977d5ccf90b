// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The query of a request or of an answer's link: decoded pairs in their order.
/// A value; parsing never fails: an invalid escape stands for itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace directory {

struct QueryItem {
    std::string name;
    std::string value;
};

class Query {
public:
    /// Items beyond this many are ignored.
    static constexpr std::size_t MaxItems = 64;

    Query() = default;
    Query(std::initializer_list<QueryItem> items)
        : m_items(items)
    {
    }

    /// Reads "a=b&c=d" with %XX and "+" for a blank.
    static Query parse(std::string_view encoded);

    const std::vector<QueryItem> &items() const { return m_items; }
    /// Names are compared without case, as the web API does. The first of several wins.
    bool has(std::string_view name) const;
    std::string value(std::string_view name) const;
    void add(std::string name, std::string value);
    /// Adds the items of `other` whose names are not here yet.
    void merge(const Query &other);
    std::string encoded() const;

private:
    const QueryItem *find(std::string_view name) const;

    std::vector<QueryItem> m_items;
};

std::string percentDecoded(std::string_view text, bool plusIsBlank);
std::string lowered(std::string_view text);
bool equalIgnoringCase(std::string_view a, std::string_view b);
/// The parts between `separator`, empty ones left out.
std::vector<std::string> split(std::string_view text, char separator);
/// A number written in digits only, at most nine of them; -1 for everything else.
int parseNumber(std::string_view text);

} // namespace directory
