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

/// One stream's decoding from its first byte to its last: pipelines, one after the other. A server
/// may change the codec or the container in the middle of a connection, or send on after a
/// container's end; GStreamer falls silent then, or fails. The bytes since the last sample are
/// kept, and a new pipeline begins with them, so that nothing is lost that could be decoded. One
/// thread, but for the callbacks.
class DecoderSession {
public:
    DecoderSession(const DecoderFormat &wanted, DecoderPipeline::Callbacks callbacks);

    /// Whether feed() should be called now; the callback wake() tells when to look again.
    bool hasSpace() const { return m_pipeline->hasSpace(); }
    void feed(const char *data, std::size_t size);
    void finish();
    /// To be called after wake() and feed(), and after finish() from time to time: begins anew
    /// where that is of use, and tells how it is.
    DecoderPipeline::State look();
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
    std::deque<char> m_tail; ///< pushed to m_pipeline and perhaps not decoded
    std::uint64_t m_tailBegin = 0; ///< its position among the bytes that m_pipeline got
    int m_attempt = 0; ///< pipelines since the last one that decoded anything; 0: it is the first
    std::size_t m_beginSize = 0; ///< bytes that m_pipeline began with
    bool m_beginsContainer = false; ///< with them
    bool m_finished = false;
    std::uint64_t m_framesSeen = 0; ///< by hasFallenSilent()
    std::chrono::steady_clock::time_point m_framesSince; ///< since when there are so many
};
