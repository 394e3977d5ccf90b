// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/RequestHeads.h"

#include <algorithm>
#include <utility>

namespace directory {

namespace {

/// The length of the head at the front, up to and with its empty line; 0 while it is incomplete.
/// Lines end with CR LF or, from careless clients, with LF alone (RFC 9112, 2.2).
std::size_t headLength(std::string_view bytes)
{
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos;
         end = bytes.find('\n', end + 1)) {
        const std::string_view next = bytes.substr(end + 1, 2);
        if (next.substr(0, 1) == "\n")
            return end + 2;
        if (next == "\r\n")
            return end + 3;
    }
    return 0;
}

} // namespace

RequestHeads::RequestHeads(Report report)
    : m_report(std::move(report))
{
}

void RequestHeads::feed(std::string_view bytes)
{
    const auto skipped
        = static_cast<std::size_t>(std::min<std::uint64_t>(m_bodyLeft, bytes.size()));
    if (m_bodyLeft != UnknownLength)
        m_bodyLeft -= skipped;
    bytes.remove_prefix(skipped);
    if (m_tooLong || bytes.empty())
        return;
    m_bytes += bytes;
    search();
}

void RequestHeads::skipBody(std::uint64_t length)
{
    m_reported = false;
    m_bodyLeft = length;
    feed(std::exchange(m_bytes, {})); // a client may send the next request before the response
}

void RequestHeads::search()
{
    if (m_reported)
        return;
    // An empty line before a request is allowed (RFC 9112, 2.2).
    m_bytes.erase(0, std::min(m_bytes.find_first_not_of("\r\n"), m_bytes.size()));
    const std::size_t length = headLength(m_bytes);
    m_tooLong = (length > 0 ? length : m_bytes.size()) > MaxHead;
    if (m_tooLong || length == 0)
        return;

    const std::string head = m_bytes.substr(0, length);
    m_bytes.erase(0, length);
    m_reported = true;
    std::string_view line = std::string_view(head).substr(0, head.find('\n'));
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::size_t version = line.rfind(" HTTP/");
    const std::string_view target = line.substr(std::min(blank + 1, line.size()));
    m_report(line.substr(0, blank),
        version == std::string_view::npos || version <= blank
            ? target
            : target.substr(0, version - blank - 1));
}

} // namespace directory
