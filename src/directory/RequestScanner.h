// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Follows the bytes that a client sends on one connection and tells the request lines in them,
/// exactly as they came: the HTTP library normalises targets before it shows them. It judges
/// nothing; that is the library's task.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace directory {

class RequestScanner {
public:
    /// Method and target of a request whose head is complete.
    using Report = std::function<void(std::string_view method, std::string_view target)>;
    /// A longer head ends the scanning. The library would drop such a connection without a word.
    static constexpr std::size_t maxHead = 32 * 1024;

    explicit RequestScanner(Report report);
    void feed(std::string_view bytes);
    /// Whether something was longer than maxHead; then nothing more is reported.
    bool lost() const { return m_state == State::Lost; }

    /// Whether nothing has come of a next request.
    bool isBetweenRequests() const { return m_state == State::Head && m_buffer.empty(); }

private:
    enum class State { Head, Body, ChunkSize, Chunk, Trailer, Lost };

    /// Each takes what it can from the front of the bytes.
    void takeHead(std::string_view &bytes);
    void takeBody(std::string_view &bytes);
    bool takeLine(std::string_view &bytes, std::string &line);
    void takeChunkSize(std::string_view &bytes);
    void takeTrailer(std::string_view &bytes);
    void headDone();

    Report m_report;
    State m_state = State::Head;
    std::string m_buffer;
    std::uint64_t m_left = 0;
};

} // namespace directory
