// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "decoder/DecoderSession.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace {

using State = DecoderPipeline::State;

/// A stream that was being decoded has changed its format when StallBytes, and at least
/// StallSeconds' worth of its bytes, bring no sample.
constexpr std::uint64_t StallBytes = 16 * 1024;
constexpr std::uint64_t StallSeconds = 3;
/// So many bytes are enough if the beginning of a container is among them.
constexpr std::uint64_t BeginningBytes = 8 * 1024;
/// A new stream may begin with tags and pictures.
constexpr std::uint64_t MaxBytesBeforeSamples = 16 * 1024 * 1024;
/// After a restart no such tags are expected.
constexpr std::uint64_t MaxBytesAfterRestart = 512 * 1024;
/// Remaining frames of the previous codec can make a new pipeline misdetect the format. So if a
/// pipeline decodes nothing from the bytes it was started with and AttemptBytes more, the next
/// attempt starts AttemptStep further on. The last attempt is given more bytes, for codecs that
/// need them.
constexpr std::uint64_t AttemptBytes = 4 * 1024;
constexpr std::uint64_t AttemptStep = 2 * 1024;
constexpr int MaxAttempts = 12;
/// Bytes after the last sample of an ended stream that justify another pipeline: fewer may be tags.
constexpr std::uint64_t MinRest = 4096;
/// The precision of bytesToLastSample().
constexpr std::uint64_t Overlap = DecoderPipeline::Piece;
/// Bytes that a restart skips at least, so that a failing pipeline is not started with the same
/// bytes over and over.
constexpr std::uint64_t MinProgress = 1024;

/// Time without a sample after finish() that counts as the end.
constexpr std::chrono::milliseconds SilenceAfterEnd {1000};

/// Signatures at the beginning of containers and tags. A pipeline that starts in the middle of a
/// container decodes nothing of it.
constexpr std::array<std::string_view, 3> Beginnings {
    std::string_view("OggS\0\x02", 6), std::string_view("fLaC"), std::string_view("ID3")};

} // namespace

DecoderSession::DecoderSession(const DecoderFormat &wanted, DecoderPipeline::Callbacks callbacks)
    : m_wanted(wanted)
    , m_callbacks(std::move(callbacks))
    , m_pipeline(std::make_unique<DecoderPipeline>(m_wanted, m_callbacks))
{
}

void DecoderSession::feed(const char *data, std::size_t size)
{
    m_tail.insert(m_tail.end(), data, data + size);
    push(data, size);
    forgetDecoded();
}

void DecoderSession::push(const char *data, std::size_t size)
{
    for (std::size_t at = 0; at < size; at += DecoderPipeline::Piece)
        m_pipeline->push(data + at, std::min(DecoderPipeline::Piece, size - at));
}

void DecoderSession::forgetDecoded()
{
    const std::uint64_t decoded = m_pipeline->bytesToLastSample();
    std::uint64_t keepFrom = decoded > Overlap ? decoded - Overlap : 0;
    // Long tags at the beginning need not be kept in full: a restart can do without them.
    const std::uint64_t end = m_tailBegin + m_tail.size();
    if (end > MaxBytesAfterRestart)
        keepFrom = std::max(keepFrom, end - MaxBytesAfterRestart);
    if (keepFrom <= m_tailBegin)
        return;
    dropTail(keepFrom - m_tailBegin);
}

void DecoderSession::dropTail(std::uint64_t count)
{
    m_tail.erase(m_tail.begin(), m_tail.begin() + static_cast<std::ptrdiff_t>(count));
    m_tailBegin += count;
}

void DecoderSession::finish()
{
    m_finished = true;
    m_framesSince = std::chrono::steady_clock::now();
    m_pipeline->finish();
}

/// Whether the undecoded bytes contain the beginning of a container.
bool DecoderSession::hasBeginning() const
{
    return std::any_of(Beginnings.begin(), Beginnings.end(), [this](std::string_view beginning) {
        return std::search(m_tail.begin(), m_tail.end(), beginning.begin(), beginning.end())
            != m_tail.end();
    });
}

/// Bytes that the current pipeline may take before its first sample.
std::uint64_t DecoderSession::patienceBeforeSamples() const
{
    if (m_attempt == 0)
        return MaxBytesBeforeSamples;
    if (m_attempt == MaxAttempts || m_beginsContainer)
        return MaxBytesAfterRestart;
    return m_finished && m_pipeline->state() == State::Ended ? MinRest : m_beginSize + AttemptBytes;
}

/// Whether the pipeline takes bytes but no longer produces samples.
bool DecoderSession::isStalled() const
{
    if (m_pipeline->isWaiting())
        return false;
    const std::uint64_t frames = m_pipeline->framesDecoded();
    const std::uint64_t decoded = m_pipeline->bytesToLastSample();
    const std::uint64_t taken = m_pipeline->bytesTaken();
    if (frames == 0)
        return taken > patienceBeforeSamples();
    const double seconds = static_cast<double>(frames) / m_pipeline->format().rate;
    const auto usual
        = static_cast<std::uint64_t>(static_cast<double>(decoded) / seconds * StallSeconds);
    const std::uint64_t patience = m_finished && m_pipeline->state() == State::Ended
        ? MinRest // no more samples will come
        : std::max(StallBytes, usual);
    const std::uint64_t silent = taken - std::min(taken, decoded);
    return silent > patience || (silent > BeginningBytes && hasBeginning());
}

/// Some demuxers that found no stream do not forward the end of the stream.
bool DecoderSession::hasFallenSilent()
{
    const auto now = std::chrono::steady_clock::now();
    const std::uint64_t frames = m_pipeline->framesDecoded();
    if (frames != m_framesSeen || m_pipeline->isWaiting() || !m_finished) {
        m_framesSeen = frames;
        m_framesSince = now;
    }
    return m_finished && now - m_framesSince > SilenceAfterEnd;
}

State DecoderSession::look()
{
    State state = m_pipeline->state();
    if (hasFallenSilent() && state == State::Decoding)
        state = State::Ended;
    const bool isAtEnd = state == State::Ended && m_finished;
    if ((state == State::Decoding || isAtEnd) && !isStalled())
        return state;
    const bool wasDecoding = m_pipeline->framesDecoded() > 0;
    const bool mayRestart = wasDecoding || (m_attempt > 0 && m_attempt < MaxAttempts);
    if (mayRestart && restart())
        return State::Decoding;
    // Undecodable bytes after the end of a file, such as tags, are no failure.
    return m_finished && (m_attempt > 0 || wasDecoding) ? State::Ended : State::Failed;
}

/// Starts a new pipeline with the bytes since the last sample, from the beginning of a container on
/// if they contain one. Returns false if it would get nearly the same bytes again.
bool DecoderSession::restart()
{
    forgetDecoded();
    const bool wasDecoding = m_pipeline->framesDecoded() > 0;
    const std::uint64_t wanted = wasDecoding ? MinProgress : AttemptStep;
    if (m_tailBegin + m_tail.size() < wanted)
        return false;
    if (m_tailBegin < wanted)
        dropTail(wanted - m_tailBegin);
    std::vector<char> tail(m_tail.begin(), m_tail.end());
    const std::string_view bytes(tail.data(), tail.size());
    std::size_t begin = bytes.size();
    for (const std::string_view &beginning : Beginnings)
        begin = std::min(begin, bytes.find(beginning));
    m_beginsContainer = begin < bytes.size();
    if (m_beginsContainer) {
        dropTail(begin);
        tail.erase(tail.begin(), tail.begin() + static_cast<std::ptrdiff_t>(begin));
    }
    if (wasDecoding)
        m_wanted = m_pipeline->format();
    m_attempt = wasDecoding ? 1 : m_attempt + 1;
    m_tailBegin = 0;
    m_beginSize = tail.size();
    m_framesSeen = 0;
    m_framesSince = std::chrono::steady_clock::now();
    m_pipeline.reset();
    m_pipeline = std::make_unique<DecoderPipeline>(m_wanted, m_callbacks);
    push(tail.data(), tail.size());
    if (m_finished)
        m_pipeline->finish();
    return true;
}
