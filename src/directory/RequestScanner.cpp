// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/RequestScanner.h"

#include "directory/Query.h"

#include <algorithm>
#include <cstdlib>

namespace directory {

namespace {

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

} // namespace

RequestScanner::RequestScanner(Report report)
    : m_report(std::move(report))
{
}

void RequestScanner::feed(std::string_view bytes)
{
    while (!bytes.empty() && m_state != State::Lost) {
        switch (m_state) {
        case State::Head:
            takeHead(bytes);
            break;
        case State::Body:
        case State::Chunk:
            takeBody(bytes);
            break;
        case State::ChunkSize:
            takeChunkSize(bytes);
            break;
        case State::Trailer:
            takeTrailer(bytes);
            break;
        case State::Lost:
            break;
        }
    }
}

void RequestScanner::takeHead(std::string_view &bytes)
{
    // Line by line: the head ends with an empty one, whether lines end with CR LF or LF alone.
    const std::size_t newline = bytes.find('\n');
    const std::size_t length = newline == std::string_view::npos ? bytes.size() : newline + 1;
    m_buffer.append(bytes.substr(0, length));
    bytes.remove_prefix(length);
    if (m_buffer == "\r\n" || m_buffer == "\n") {
        m_buffer.clear(); // an empty line before a request is allowed
        return;
    }
    if (m_buffer.size() > maxHead) {
        m_state = State::Lost;
        return;
    }
    const std::string_view head = m_buffer;
    const auto endsWith = [head](std::string_view end) {
        return head.size() >= end.size() && head.substr(head.size() - end.size()) == end;
    };
    if (endsWith("\n\r\n") || endsWith("\n\n"))
        headDone();
}

void RequestScanner::headDone()
{
    const std::string head = std::move(m_buffer);
    m_buffer.clear();
    std::string_view rest = head;
    const std::string_view line = trimmed(rest.substr(0, rest.find('\n')));
    rest.remove_prefix(std::min(rest.find('\n') + 1, rest.size()));

    bool chunked = false;
    m_left = 0;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view header = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const std::size_t colon = header.find(':');
        if (colon == std::string_view::npos)
            continue;
        const std::string value(trimmed(header.substr(colon + 1)));
        if (equalIgnoringCase(header.substr(0, colon), "Content-Length"))
            m_left = static_cast<std::uint64_t>(std::max(0, parseNumber(value)));
        if (equalIgnoringCase(header.substr(0, colon), "Transfer-Encoding"))
            chunked = lowered(value).find("chunked") != std::string::npos;
    }
    m_state = chunked ? State::ChunkSize : m_left > 0 ? State::Body : State::Head;

    const std::size_t first = line.find(' ');
    const std::size_t last = line.rfind(" HTTP/");
    if (first == std::string_view::npos)
        m_report(line, {});
    else
        m_report(line.substr(0, first),
            line.substr(first + 1,
                last == std::string_view::npos || last <= first ? std::string_view::npos
                                                                : last - first - 1));
}

void RequestScanner::takeBody(std::string_view &bytes)
{
    const std::uint64_t taken = std::min<std::uint64_t>(m_left, bytes.size());
    bytes.remove_prefix(static_cast<std::size_t>(taken));
    m_left -= taken;
    if (m_left == 0)
        m_state = m_state == State::Chunk ? State::ChunkSize : State::Head;
}

bool RequestScanner::takeLine(std::string_view &bytes, std::string &line)
{
    const std::size_t newline = bytes.find('\n');
    const std::size_t length = newline == std::string_view::npos ? bytes.size() : newline + 1;
    m_buffer.append(bytes.substr(0, length));
    bytes.remove_prefix(length);
    if (m_buffer.size() > maxHead)
        m_state = State::Lost;
    if (newline == std::string_view::npos)
        return false;
    line = trimmed(std::string_view(m_buffer).substr(0, m_buffer.size() - 1));
    m_buffer.clear();
    return true;
}

void RequestScanner::takeChunkSize(std::string_view &bytes)
{
    std::string line;
    if (!takeLine(bytes, line)
        || line.empty()) // the line end behind a chunk reads as an empty line
        return;
    m_left = std::strtoull(line.c_str(), nullptr, 16);
    m_state = m_left > 0 ? State::Chunk : State::Trailer;
}

void RequestScanner::takeTrailer(std::string_view &bytes)
{
    std::string line;
    if (takeLine(bytes, line) && line.empty())
        m_state = State::Head;
}

} // namespace directory
