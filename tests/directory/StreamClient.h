// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A client that requests one stream and reads it at the test's pace. All waits are bounded.
#pragma once

#include <string>

namespace directory::test {

class StreamClient {
public:
    enum class End { Open, Closed, Reset };

    /// `headers` are whole lines with CR LF. With a small receive buffer the server soon notices
    /// that nothing is read.
    StreamClient(int port, const std::string &target, const std::string &headers = {},
        int receiveBuffer = 0, const std::string &method = "GET");
    ~StreamClient();
    StreamClient(const StreamClient &) = delete;
    StreamClient &operator=(const StreamClient &) = delete;

    /// Reads for this long, or until the connection ends.
    void readFor(int milliseconds);
    /// Reads until there are `count` bytes of audio; false when that takes longer than ten seconds
    /// or the connection ends before.
    bool readBytes(std::size_t count);
    /// Waits for the connection's end, ten seconds at most.
    End readToEnd();

    End end() const { return m_end; }
    int status() const;
    /// The value of a header, in lower case; empty without that header.
    std::string header(const std::string &name) const;
    /// The bytes received after the head.
    std::string body() const;

private:
    bool readOnce(int milliseconds);
    std::size_t bodyStart() const;

    int m_socket;
    End m_end = End::Open;
    std::string m_bytes;
};

} // namespace directory::test
