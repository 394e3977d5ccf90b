// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Query.h"

#include <algorithm>
#include <glib.h>

namespace directory {

namespace {

bool standsInQuery(char c)
{
    return g_ascii_isalnum(c) || std::string_view("-._~,:").find(c) != std::string_view::npos;
}

void appendEncoded(std::string &out, std::string_view text)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    for (const char c : text) {
        if (standsInQuery(c)) {
            out += c;
        } else if (c == ' ') {
            out += '+';
        } else {
            const auto byte = static_cast<unsigned char>(c);
            out += '%';
            out += Digits[byte >> 4];
            out += Digits[byte & 15];
        }
    }
}

} // namespace

std::string percentDecoded(std::string_view text, bool plusIsBlank)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && g_ascii_xdigit_value(text[i + 1]) >= 0
            && g_ascii_xdigit_value(text[i + 2]) >= 0) {
            out += static_cast<char>(
                g_ascii_xdigit_value(text[i + 1]) * 16 + g_ascii_xdigit_value(text[i + 2]));
            i += 2;
        } else {
            out += plusIsBlank && text[i] == '+' ? ' ' : text[i];
        }
    }
    return out;
}

std::string lowered(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), g_ascii_tolower);
    return out;
}

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
        return g_ascii_tolower(x) == g_ascii_tolower(y);
    });
}

std::vector<std::string> split(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0)
            parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

int parseNumber(std::string_view text)
{
    if (text.empty() || text.size() > 9)
        return -1;
    int value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

Query Query::parse(std::string_view encoded)
{
    Query query;
    while (!encoded.empty() && query.m_items.size() < MaxItems) {
        const std::size_t end = std::min(encoded.find('&'), encoded.size());
        const std::string_view pair = encoded.substr(0, end);
        encoded.remove_prefix(std::min(end + 1, encoded.size()));
        if (pair.empty())
            continue;
        const std::size_t equals = std::min(pair.find('='), pair.size());
        const std::string_view value = pair.substr(std::min(equals + 1, pair.size()));
        query.add(percentDecoded(pair.substr(0, equals), true), percentDecoded(value, true));
    }
    return query;
}

const QueryItem *Query::find(std::string_view name) const
{
    const auto found = std::find_if(m_items.begin(), m_items.end(),
        [name](const QueryItem &item) { return equalIgnoringCase(item.name, name); });
    return found != m_items.end() ? &*found : nullptr;
}

bool Query::has(std::string_view name) const
{
    return find(name) != nullptr;
}

std::string Query::value(std::string_view name) const
{
    const QueryItem *item = find(name);
    return item ? item->value : std::string();
}

void Query::add(std::string name, std::string value)
{
    m_items.push_back({std::move(name), std::move(value)});
}

void Query::merge(const Query &other)
{
    for (const QueryItem &item : other.m_items) {
        if (!has(item.name))
            m_items.push_back(item);
    }
}

std::string Query::encoded() const
{
    std::string out;
    for (const QueryItem &item : m_items) {
        if (!out.empty())
            out += '&';
        appendEncoded(out, item.name);
        out += '=';
        appendEncoded(out, item.value);
    }
    return out;
}

} // namespace directory
