// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "decoder/DecoderSession.h"
#include "fuzz/fuzzing.h"
#include "media/Decoders.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

// The life cycle of a decoder: media of any kind and in any state, consumed slowly, quickly or not
// at all, finished or abandoned at any point. The output stays within its bounds and in one format,
// and nothing blocks forever.

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using State = DecoderPipeline::State;

constexpr auto Patience = 8s;

/// The first four bytes of an input.
struct Plan {
    std::uint8_t piece; ///< bytes fed at a time: 16 * (piece + 1)
    std::uint8_t share; ///< 255ths of the media to feed; 255 also finishes the session
    std::uint8_t samples; ///< blocks of samples that are accepted; 255: all
    std::uint8_t ways;

    bool isEnded() const { return share == 255; }
    bool isFormatKnown() const { return (ways & 1) != 0; }
    bool isSlow() const { return (ways & 2) != 0; }
    /// Whether the session is destroyed without waiting for the decoder.
    bool isLeftAtOnce() const { return (ways & 4) != 0; }
};

class Listener {
public:
    explicit Listener(const Plan &plan)
        : m_plan(plan)
    {
    }

    DecoderPipeline::Callbacks callbacks()
    {
        return {[this](const DecoderFormat &format, const char *data, std::size_t size) {
                    return take(format, data, size);
                },
            [](const std::string &title) {
                FUZZ_REQUIRE(!title.empty() && title.size() <= DecoderLimits::MaxText + 3);
            },
            [](std::uint32_t bitRate) { FUZZ_REQUIRE(bitRate > 0); }, [this] { wake(); }};
    }

    /// Waits for a callback, but not longer than 10 ms.
    void wait()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_condition.wait_for(lock, 10ms, [this] { return m_woken; });
        m_woken = false;
    }

private:
    bool take(const DecoderFormat &format, const char *data, std::size_t size)
    {
        FUZZ_REQUIRE(
            format.rate >= DecoderLimits::MinRate && format.rate <= DecoderLimits::MaxRate);
        FUZZ_REQUIRE(format.channels == 1 || format.channels == 2);
        FUZZ_REQUIRE(data && size % (format.channels * sizeof(float)) == 0);
        if (m_plan.isFormatKnown())
            FUZZ_REQUIRE(format.rate == 44100 && format.channels == 2);
        FUZZ_REQUIRE(m_blocks == 0
            || (m_format.rate == format.rate && m_format.channels == format.channels));
        m_format = format;
        ++m_blocks;
        if (m_plan.isSlow())
            std::this_thread::sleep_for(1ms);
        return m_plan.samples == 255 || m_blocks <= m_plan.samples;
    }

    void wake()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_woken = true;
        m_condition.notify_one();
    }

    const Plan m_plan;
    DecoderFormat m_format;
    int m_blocks = 0;
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_woken = false; ///< guarded by m_mutex
};

void live(const Plan &plan, const char *media, std::size_t size)
{
    Listener listener(plan);
    const DecoderFormat wanted {plan.isFormatKnown() ? 44100U : 0U, plan.isFormatKnown() ? 2U : 0U};
    DecoderSession session(wanted, listener.callbacks());
    const std::size_t piece = 16U * (plan.piece + 1U);
    const std::size_t end = size * plan.share / 255;
    const auto limit = Clock::now() + Patience;
    for (std::size_t at = 0; at < end && session.look() == State::Decoding;) {
        if (session.hasSpace()) {
            const std::size_t count = std::min(piece, end - at);
            session.feed(media + at, count);
            at += count;
            continue;
        }
        FUZZ_REQUIRE(Clock::now() < limit);
        if (plan.isLeftAtOnce())
            return;
        listener.wait();
    }
    if (!plan.isEnded())
        return;
    session.finish();
    while (!plan.isLeftAtOnce() && session.look() == State::Decoding) {
        FUZZ_REQUIRE(Clock::now() < limit);
        listener.wait();
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool started = [] {
        startGStreamer();
        keepAllowedDecodersOnly();
        return true;
    }();
    if (!started || size < sizeof(Plan))
        return 0;
    const Plan plan {data[0], data[1], data[2], data[3]};
    live(plan, reinterpret_cast<const char *>(data) + sizeof(Plan), size - sizeof(Plan));
    return 0;
}
