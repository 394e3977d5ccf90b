#include "decoder/DecoderSession.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace {

using State = DecoderPipeline::State;

/// Bytes without a sample after which a stream that was decoded before has turned into another; or
/// as many seconds of it, where they are more.
constexpr std::uint64_t StallBytes = 16 * 1024;
constexpr std::uint64_t StallSeconds = 3;
/// So many are enough where a container's beginning is among them.
constexpr std::uint64_t BeginningBytes = 8 * 1024;
/// A stream that was never decoded may begin with tags and pictures.
constexpr std::uint64_t MaxBytesBeforeSamples = 16 * 1024 * 1024;
/// After a restart there are none to be expected.
constexpr std::uint64_t MaxBytesAfterRestart = 512 * 1024;
/// Bytes after the last sample of an ended stream that are worth another pipeline: less may be
/// tags.
constexpr std::uint64_t MinRest = 4096;
/// What a pipeline took is known to the size of a piece.
constexpr std::uint64_t Overlap = DecoderPipeline::Piece;
/// A pipeline that fails again and again must not be given the same bytes for ever.
constexpr std::uint64_t MinProgress = 1024;

/// Without a sample, once all bytes are there.
constexpr std::chrono::milliseconds SilenceAfterEnd {1000};

/// What containers begin with. A pipeline that begins in the middle of one decodes nothing of it.
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
    // Tags at the beginning are not kept: what comes after them is enough to begin anew.
    const std::uint64_t end = m_tailBegin + m_tail.size();
    if (end > MaxBytesAfterRestart)
        keepFrom = std::max(keepFrom, end - MaxBytesAfterRestart);
    if (keepFrom <= m_tailBegin)
        return;
    const auto count = static_cast<std::ptrdiff_t>(keepFrom - m_tailBegin);
    m_tail.erase(m_tail.begin(), m_tail.begin() + count);
    m_tailBegin = keepFrom;
}

void DecoderSession::finish()
{
    m_finished = true;
    m_framesSince = std::chrono::steady_clock::now();
    m_pipeline->finish();
}

/// Whether a container begins in what is not decoded yet.
bool DecoderSession::hasBeginning() const
{
    return std::any_of(Beginnings.begin(), Beginnings.end(), [this](std::string_view beginning) {
        return std::search(m_tail.begin(), m_tail.end(), beginning.begin(), beginning.end())
            != m_tail.end();
    });
}

bool DecoderSession::isStalled() const
{
    if (m_pipeline->isWaiting())
        return false;
    const std::uint64_t frames = m_pipeline->framesDecoded();
    const std::uint64_t decoded = m_pipeline->bytesToLastSample();
    const std::uint64_t taken = m_pipeline->bytesTaken();
    if (frames == 0)
        return taken > (m_restarted ? MaxBytesAfterRestart : MaxBytesBeforeSamples);
    const double seconds = static_cast<double>(frames) / m_pipeline->format().rate;
    const auto usual
        = static_cast<std::uint64_t>(static_cast<double>(decoded) / seconds * StallSeconds);
    const std::uint64_t patience = m_finished && m_pipeline->state() == State::Ended
        ? MinRest // there is nothing to wait for
        : std::max(StallBytes, usual);
    const std::uint64_t silent = taken - std::min(taken, decoded);
    return silent > patience || (silent > BeginningBytes && hasBeginning());
}

/// Some demuxers that found nothing keep the end of the stream to themselves.
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
    if (m_pipeline->framesDecoded() > 0 && restart())
        return State::Decoding;
    // What follows the end of a file, tags say, need not be audio.
    return m_finished && (m_restarted || m_pipeline->framesDecoded() > 0) ? State::Ended
                                                                          : State::Failed;
}

/// With what came since the last sample, from the beginning of a container on where there is one.
/// Returns false when a new pipeline would see nearly the same bytes again.
bool DecoderSession::restart()
{
    forgetDecoded();
    if (m_tailBegin + m_tail.size() < MinProgress)
        return false;
    if (m_tailBegin < MinProgress) {
        const auto count = static_cast<std::ptrdiff_t>(MinProgress - m_tailBegin);
        m_tail.erase(m_tail.begin(), m_tail.begin() + count);
    }
    m_wanted = m_pipeline->format();
    const std::vector<char> tail(m_tail.begin(), m_tail.end());
    const std::string_view bytes(tail.data(), tail.size());
    std::size_t begin = bytes.size();
    for (const std::string_view &beginning : Beginnings)
        begin = std::min(begin, bytes.find(beginning));
    if (begin == bytes.size())
        begin = 0;
    m_tail.erase(m_tail.begin(), m_tail.begin() + static_cast<std::ptrdiff_t>(begin));
    m_tailBegin = 0;
    m_restarted = true;
    m_framesSeen = 0;
    m_framesSince = std::chrono::steady_clock::now();
    m_pipeline.reset();
    m_pipeline = std::make_unique<DecoderPipeline>(m_wanted, m_callbacks);
    push(bytes.data() + begin, bytes.size() - begin);
    if (m_finished)
        m_pipeline->finish();
    return true;
}
