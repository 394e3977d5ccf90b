// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Finds the request lines in the bytes that a client sends on one connection, exactly as they
/// came: libsoup normalises targets before it shows them. This looks for the ends of heads and
/// reads nothing but first lines; how long a body is, libsoup says.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

namespace directory {

class RequestHeads {
public:
    /// Method and target of a request whose head is complete, before libsoup has seen its end.
    using Report = std::function<void(std::string_view method, std::string_view target)>;
    /// A longer head ends the search: libsoup drops such a connection without a response.
    static constexpr std::size_t MaxHead = 32 * 1024;
    /// For bodies whose end cannot be told from the head. No further request is reported.
    static constexpr std::uint64_t UnknownLength = std::numeric_limits<std::uint64_t>::max();

    explicit RequestHeads(Report report);

    void feed(std::string_view bytes);
    /// To be called for each reported request: so many bytes stand between it and the next one.
    void skipBody(std::uint64_t length);

    /// Whether a head was longer than maxHead.
    bool isTooLong() const { return m_tooLong; }
    /// Whether the last request was complete and nothing has come since.
    bool isBetweenRequests() const { return !m_reported && m_bodyLeft == 0 && m_bytes.empty(); }

private:
    void search();

    Report m_report;
    std::string m_bytes; ///< from the next head on, as far as it has come
    std::uint64_t m_bodyLeft = 0; ///< to be skipped before it
    bool m_reported = false; ///< and skipBody() not yet called
    bool m_tooLong = false;
};

} // namespace directory
