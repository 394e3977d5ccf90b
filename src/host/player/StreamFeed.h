// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/StreamConsumer.h"

#include <chrono>
#include <cstddef>
#include <optional>

/// Passes the audio of successive connections to a consumer, and tracks what each connection was
/// worth: only audio decoded from the current connection's bytes counts. Reader thread only.
class StreamFeed {
public:
    using GoOn = StreamConsumer::GoOn;

    StreamFeed(StreamConsumer &consumer, GoOn goOn);

    /// A new connection to some address.
    void open();
    /// A new connection that resumes the file of the last one.
    void resume();
    /// The bytes that follow begin a stream or file, and get a new decoder. \a place: where they
    /// belong in the file.
    void start(const std::optional<AudioPlace> &place = {});
    /// Waits for space. False when the audio cannot be decoded or the play is over.
    bool take(const char *data, std::size_t size);
    /// The bytes taken were not decodable: drops them together with the decoder.
    void forget();
    /// Waits until all bytes are decoded.
    void finish();
    bool goOn() const { return m_goOn(); }
    StreamConsumer &consumer() const { return m_consumer; }

    /// Whether the connection delivered bytes to decode.
    bool hasBrought() const { return m_started && m_brought; }
    /// False if the connection's bytes cannot be decoded. Before start() the decoder still belongs
    /// to an earlier connection and does not count.
    bool isUsable() const { return !m_started || m_consumer.isUsable(); }
    /// Whether a second of this connection's audio was decoded. May become true after the
    /// connection has ended, because bytes are decoded after take().
    bool isGood();

private:
    StreamConsumer &m_consumer;
    const GoOn m_goOn;
    bool m_started = false;
    bool m_brought = false; ///< the connection delivered bytes
    bool m_good = false;
    std::chrono::milliseconds m_before {0}; ///< decoded from earlier connections to the same file
};
