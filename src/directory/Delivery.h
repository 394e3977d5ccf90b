// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Writes one response to a connection byte by byte, as a fault demands: late, slowly, truncated.
/// Owns the connection, which the server hands off to it; destroying it closes the connection.
/// Lives on the server's thread.
#pragma once

#include "directory/Faults.h"
#include "directory/Wire.h"

#include <functional>
#include <string>

namespace directory {

/// Status line and headers without those that frame the body, and without the empty line.
std::string headOf(const Answer &answer);

class RawDelivery {
public:
    /// A connection that a fault holds open is closed after this time.
    static constexpr int MaxHoldSeconds = 600;

    /// Takes over the reference to `stream`, which comes from tappedStream(). `done` is called at
    /// most once and may destroy this object.
    RawDelivery(GIOStream *stream, const Answer &answer, const Delivery &delivery, bool withBody,
        std::function<void()> done);
    RawDelivery(const RawDelivery &) = delete;
    RawDelivery &operator=(const RawDelivery &) = delete;

    void start();

private:
    void begin();
    void write();
    void end();
    void finish();
    /// How many bytes may have been sent by now.
    std::size_t allowed() const;

    std::string m_bytes;
    std::size_t m_head; ///< length of the status line and the headers
    std::size_t m_sent = 0;
    std::size_t m_total = 0; ///< what is to be sent of m_bytes
    Delivery m_delivery;
    std::function<void()> m_done;
    std::int64_t m_started = 0; ///< when the first byte was due, in microseconds
    Watch m_timer;
    Wire m_wire;
};

} // namespace directory
