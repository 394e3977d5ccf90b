// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// Decoders of broken streams, ended at random moments: none blocks its caller, and none leaves a
/// process behind. VESK_SEEDS sets their number, 1,000 by default.
#include "host/player/DecoderProcess.h"
#include "host/player/StreamDecoder.h"
#include "tests/host/player/BrokenMedia.h"

#include <QElapsedTimer>

#include <atomic>
#include <csignal>
#include <gmock/gmock.h>

namespace {

using Taken = StreamConsumer::Taken;

constexpr int Shards = 4;
/// Milliseconds; generous, as the machine may be busy with the other shards.
constexpr int LongestStep = 3000;

int seeds()
{
    const int wanted = qEnvironmentVariableIntValue("VESK_SEEDS");
    return wanted > 0 ? wanted : 1000;
}

/// One decoder from its start to its end.
class Life {
public:
    explicit Life(unsigned seed)
        : m_random(seed)
        , m_stream(brokenMedia(m_random))
        , m_endAt(m_random() % 3 == 0
                  ? m_stream.size()
                  : static_cast<int>(m_random() % static_cast<unsigned>(m_stream.size() + 1)))
        , m_isSlow(m_random() % 8 == 0)
    {
    }

    /// Runs the decoder; returns the duration of its longest call in milliseconds.
    qint64 live()
    {
        auto process = std::make_unique<DecoderProcess>();
        EXPECT_TRUE(process->isRunning()) << process->problem().toStdString();
        const pid_t pid = process->pid();
        {
            StreamDecoder decoder({}, callbacks(), std::move(process));
            feed(decoder);
            endSomehow(decoder);
            m_clock.restart();
        }
        note();
        EXPECT_EQ(::kill(pid, 0), -1);
        return m_longest;
    }

private:
    StreamDecoderCallbacks callbacks()
    {
        StreamDecoderCallbacks callbacks;
        callbacks.takeAudio = [this](const AudioFormat &format, const char *, std::size_t size) {
            EXPECT_TRUE(format.isKnown());
            EXPECT_EQ(size % (sizeof(float) * static_cast<std::size_t>(format.channels)), 0U);
            return m_isSlow && ++m_asked % 3 != 0 ? Taken::None : Taken::All;
        };
        callbacks.ahead
            = [this] { return m_isSlow ? StreamConsumer::Plenty : std::chrono::milliseconds(0); };
        callbacks.takeTitle = [](const QString &title) { EXPECT_LE(title.size(), 512); };
        callbacks.takeBitRate = [](int rate) { EXPECT_GT(rate, 0); };
        return callbacks;
    }

    void feed(StreamDecoder &decoder)
    {
        const int piece = 1 + static_cast<int>(m_random() % 16384);
        for (int at = 0; at < m_endAt; at += piece) {
            const int size = std::min(piece, m_endAt - at);
            Taken taken = Taken::None;
            for (int tries = 0; taken == Taken::None && tries < 40; ++tries) {
                m_clock.restart();
                taken = decoder.push(m_stream.constData() + at, static_cast<std::size_t>(size));
                note();
            }
            if (taken != Taken::All)
                return;
        }
    }

    void endSomehow(StreamDecoder &decoder)
    {
        switch (m_random() % 4) {
        case 0:
            return; // destroyed without abort() or finish()
        case 1:
            return decoder.abort();
        default:
            for (int tries = 0; tries < 40; ++tries) {
                m_clock.restart();
                const bool finished = decoder.finish();
                note();
                if (finished)
                    return;
            }
            ADD_FAILURE() << "what was fed is not decoded within ten seconds";
        }
    }

    void note() { m_longest = std::max(m_longest, m_clock.elapsed()); }

    std::mt19937 m_random;
    const QByteArray m_stream;
    const int m_endAt;
    const bool m_isSlow;
    std::atomic<int> m_asked {0};
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

class DecoderLifecycleTest : public testing::TestWithParam<int> { };

TEST_P(DecoderLifecycleTest, NoStreamBlocksItsCaller)
{
    qint64 longest = 0;
    for (int seed = GetParam(); seed < seeds() && !HasFailure(); seed += Shards) {
        SCOPED_TRACE(seed);
        qint64 took = Life(static_cast<unsigned>(seed)).live();
        // The machine may have stood still; a stream that blocks its caller does so again.
        for (int again = 0; took > LongestStep && again < 3; ++again)
            took = std::min(took, Life(static_cast<unsigned>(seed)).live());
        EXPECT_LE(took, LongestStep);
        longest = std::max(longest, took);
    }
    RecordProperty("longestStepMs", static_cast<int>(longest));
}

INSTANTIATE_TEST_SUITE_P(Seeds, DecoderLifecycleTest, testing::Range(0, Shards));

} // namespace
