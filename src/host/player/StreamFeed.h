// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/StreamConsumer.h"

#include <chrono>
#include <cstddef>

/// Hands one connection's audio after the other's to a consumer, and tells what a connection was
/// worth: of what the decoder says, only what this connection brought counts. Reader's thread only.
class StreamFeed {
public:
    using GoOn = StreamConsumer::GoOn;

    StreamFeed(StreamConsumer &consumer, GoOn goOn);

    /// A new connection, which has brought nothing yet.
    void open();
    /// A new connection, which goes on with the file of the last one.
    void resume();
    /// What follows is the beginning of a stream or of a file.
    void start();
    /// Waits for space; false when the audio cannot be used, and when the play is over.
    bool take(const char *data, std::size_t size);
    /// What was taken is no audio: throws it away.
    void forget();
    /// Waits until everything is decoded.
    void finish();
    bool goOn() const { return m_goOn(); }
    StreamConsumer &consumer() const { return m_consumer; }

    /// Whether the connection brought what may be audio.
    bool hasBrought() const { return m_started && m_brought; }
    /// Not while nothing was brought: what is being decoded then is the last connection's.
    bool isUsable() const { return !m_started || m_consumer.isUsable(); }
    /// Whether the connection brought a second of audio. Bytes are decoded after they were taken.
    bool isGood();

private:
    StreamConsumer &m_consumer;
    const GoOn m_goOn;
    bool m_started = false;
    bool m_brought = false; ///< The connection brought bytes.
    bool m_good = false;
    std::chrono::milliseconds m_before {0}; ///< decoded of the file by earlier connections
};
