// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "decoder/DecoderFrames.h"
#include "decoder/DecoderPipeline.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>

/// Decodes one stream with a sequence of pipelines. A server may change the codec or container in
/// the middle of a connection, or continue after the end of a container; GStreamer then fails or
/// just produces no more samples. The session keeps the bytes since the last sample and starts a
/// new pipeline with them, so that no decodable audio is lost. Used on one thread; the callbacks
/// are called on GStreamer's.
class DecoderSession {
public:
    DecoderSession(const DecoderFormat &wanted, DecoderPipeline::Callbacks callbacks);

    /// Whether feed() should be called now; wake() is called when that may have changed.
    bool hasSpace() const { return m_pipeline->hasSpace(); }
    /// Encoded bytes of the stream. Does not block.
    void feed(const char *data, std::size_t size);
    /// No more bytes follow.
    void finish();
    /// Starts a new pipeline if that is useful, and returns the state. Call it after wake() and
    /// feed(), and periodically after finish().
    DecoderPipeline::State look();
    /// Why the state is Failed, in UTF-8.
    std::string reason() const { return m_pipeline->reason(); }

private:
    void push(const char *data, std::size_t size);
    bool hasBeginning() const;
    std::uint64_t patienceBeforeSamples() const;
    bool isStalled() const;
    bool hasFallenSilent();
    bool restart();
    void forgetDecoded();
    void dropTail(std::uint64_t count);

    DecoderFormat m_wanted;
    const DecoderPipeline::Callbacks m_callbacks;
    std::unique_ptr<DecoderPipeline> m_pipeline;
    std::deque<char> m_tail; ///< bytes pushed to m_pipeline that may not be decoded yet
    std::uint64_t m_tailBegin = 0; ///< its offset in the bytes pushed to m_pipeline
    int m_attempt = 0; ///< pipelines since the last one that decoded anything; 0 for the first
    std::size_t m_beginSize = 0; ///< bytes that m_pipeline was started with
    bool m_beginsContainer = false; ///< these bytes begin a container
    bool m_finished = false;
    std::uint64_t m_framesSeen = 0; ///< by hasFallenSilent(), at its last call
    std::chrono::steady_clock::time_point m_framesSince; ///< when that number was reached
};
