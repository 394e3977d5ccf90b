// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioOutput.h"

#include "host/sound/SoundOutput.h"
#include "media/GstHandles.h"
#include "tests/support/Ear.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cmath>
#include <gmock/gmock.h>
#include <thread>

namespace {

constexpr AudioFormat Format {48000, 2};

/// A silence in milliseconds. An output that counts it as time that has played is silent for as
/// long once more.
constexpr int Break = 2000;

using Taken = StreamConsumer::Taken;

/// A tenth of a second of a tone, as a decoder hands it over; \a at counts the tenths.
std::vector<float> tone(int frequency, int at)
{
    constexpr int Frames = 4800;
    std::vector<float> samples(Frames * 2);
    for (int i = 0; i < Frames; ++i) {
        const double phase = 2 * M_PI * frequency * (at * Frames + i) / Format.rate;
        samples[static_cast<std::size_t>(2 * i)] = samples[static_cast<std::size_t>(2 * i + 1)]
            = static_cast<float>(0.25 * std::sin(phase));
    }
    return samples;
}

class AudioOutputTest : public testing::Test {
protected:
    AudioOutputTest() { startGStreamer(); }

    void open(AudioOutputSpec::Kind kind)
    {
        output = std::make_unique<AudioOutput>(
            std::make_shared<SoundOutput>(AudioOutputSpec {kind, file()}));
        QObject::connect(output.get(), &AudioOutput::audibleChanged,
            [this](bool audible) { changes.append(audible ? 'a' : 's'); });
        QObject::connect(output.get(), &AudioOutput::drained, [this] { drained = true; });
        QObject::connect(output.get(), &AudioOutput::failed, [this](const TrString &problem) {
            failed = true;
            complaint = problem.sourceText();
        });
    }
    QString file() const { return folder.filePath(QStringLiteral("out.wav")); }
    bool write(int tenths, int frequency = 440)
    {
        bool taken = true;
        for (int i = 0; taken && i < tenths; ++i)
            taken = write(tone(frequency, m_written++));
        return taken;
    }
    /// Waits for space as a decoder does. False when the output refuses the samples.
    bool write(const std::vector<float> &samples) const
    {
        Taken taken = Taken::None;
        while (taken == Taken::None) {
            taken = output->write(Format, reinterpret_cast<const char *>(samples.data()),
                samples.size() * sizeof(float));
        }
        return taken == Taken::All;
    }
    /// Whether the WAV file grows by a fifth of a second of audio in time. An output that is stuck
    /// stays so: the limit is that of a busy machine.
    bool isHeard(int milliseconds = 10000) const
    {
        constexpr qint64 Fifth = Format.rate * Format.channels * qint64(sizeof(qint16)) / 5;
        const qint64 before = QFileInfo(file()).size();
        return spinUntil([&] { return QFileInfo(file()).size() >= before + Fifth; }, milliseconds);
    }
    ear::Sound heard() const
    {
        QFile wav(file());
        EXPECT_TRUE(wav.open(QIODevice::ReadOnly));
        return ear::decoded(wav.readAll().toStdString());
    }

    QTemporaryDir folder;
    std::unique_ptr<AudioOutput> output;
    QByteArray changes;
    bool drained = false;
    bool failed = false;
    QString complaint;

private:
    int m_written = 0;
};

TEST_F(AudioOutputTest, WritesAFileInRealTime)
{
    open(AudioOutputSpec::Wav);
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(write(20));
    output->finish();
    ASSERT_TRUE(spinUntil([this] { return drained; }));
    EXPECT_GE(clock.elapsed(), 1800);
    output->close();
    EXPECT_NEAR(heard().seconds(), 2, 0.05);
    EXPECT_GT(heard().share(0, 12000, 440), 0.95);
    EXPECT_EQ(changes, "as");
}

TEST_F(AudioOutputTest, BeginsWhenThereIsEnough)
{
    open(AudioOutputSpec::Null);
    EXPECT_TRUE(write(2));
    EXPECT_FALSE(spinUntil([this] { return output->isAudible(); }, 300));
    EXPECT_GT(output->silence().count(), 200);
    EXPECT_TRUE(write(2));
    EXPECT_TRUE(spinUntil([this] { return output->isAudible(); }));
    EXPECT_EQ(output->silence().count(), 0);
    EXPECT_TRUE(output->wasAudible());
}

TEST_F(AudioOutputTest, PausesByItselfWhenItRunsDryAndSkipsNothing)
{
    open(AudioOutputSpec::Wav);
    EXPECT_TRUE(write(10));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    ASSERT_TRUE(spinUntil([this] { return !output->isAudible(); }));
    EXPECT_TRUE(write(5));
    EXPECT_FALSE(spinUntil([this] { return output->isAudible(); }, 300));
    EXPECT_TRUE(write(10));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    output->finish();
    ASSERT_TRUE(spinUntil([this] { return drained; }));
    output->close();
    EXPECT_EQ(changes, "asas");
    EXPECT_NEAR(heard().seconds(), 2.5, 0.05);
}

TEST_F(AudioOutputTest, IsHeardAtOnceAfterItRanDry)
{
    open(AudioOutputSpec::Wav);
    EXPECT_TRUE(write(5));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    ASSERT_TRUE(spinUntil([this] { return !output->isAudible(); }));
    spinUntil([] { return false; }, Break);
    EXPECT_TRUE(write(30));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    EXPECT_TRUE(isHeard(Break / 2));
}

TEST_F(AudioOutputTest, IsHeardAtOnceAfterAPauseThatForgets)
{
    open(AudioOutputSpec::Wav);
    EXPECT_TRUE(write(20));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    output->pause();
    output->flush();
    spinUntil([] { return false; }, Break);
    output->resume();
    EXPECT_TRUE(write(30));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    EXPECT_TRUE(isHeard(Break / 2));
    // More than was buffered before.
    EXPECT_TRUE(isHeard() && isHeard() && isHeard());
}

TEST_F(AudioOutputTest, TakesNothingMoreInAPause)
{
    open(AudioOutputSpec::Null);
    std::atomic<int> taken {0};
    std::thread writer([&] {
        for (int i = 0; i < 200 && write(tone(440, i)); ++i)
            ++taken;
    });
    EXPECT_TRUE(spinUntil([&] { return output->isAudible() && taken >= 100; }));
    output->pause();
    const int before = taken;
    spinUntil([] { return false; }, Break);
    EXPECT_LE(taken, before + 2);
    output->refuse(true);
    writer.join();
}

TEST_F(AudioOutputTest, IsHeardHoweverFastTheAudioCame)
{
    constexpr int Frames = 24;
    for (int round = 0; round < 10; ++round) {
        open(AudioOutputSpec::Wav);
        std::thread writer([&] {
            const std::vector<float> piece(Frames * 2);
            while (write(piece)) { }
        });
        EXPECT_TRUE(spinUntil([this] { return output->isAudible(); }));
        EXPECT_TRUE(isHeard() && isHeard() && isHeard()) << round;
        output->close();
        writer.join();
        output.reset();
    }
}

TEST_F(AudioOutputTest, APauseWaitsAndAResumeGoesOn)
{
    open(AudioOutputSpec::Wav);
    EXPECT_TRUE(write(20));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    output->pause();
    EXPECT_FALSE(output->isAudible());
    EXPECT_FALSE(spinUntil([this] { return output->isAudible(); }, 500));
    EXPECT_EQ(output->silence().count(), 0);
    output->resume();
    output->finish();
    ASSERT_TRUE(spinUntil([this] { return drained; }));
    output->close();
    EXPECT_NEAR(heard().seconds(), 2, 0.05);
}

TEST_F(AudioOutputTest, AFileThatIsPausedIsCompletedByClosing)
{
    open(AudioOutputSpec::Wav);
    EXPECT_TRUE(write(30));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    spinUntil([] { return false; }, 500);
    output->pause();
    QElapsedTimer clock;
    clock.start();
    output->close();
    EXPECT_LT(clock.elapsed(), 1500);
    EXPECT_NEAR(heard().seconds(), 0.6, 0.5);
}

TEST_F(AudioOutputTest, TakesTenSecondsAheadAndNoMore)
{
    open(AudioOutputSpec::Null);
    output->pause();
    std::atomic<int> taken {0};
    std::thread writer([&] {
        for (int i = 0; i < 200 && write(tone(440, i)); ++i)
            ++taken;
    });
    EXPECT_TRUE(spinUntil([&] { return taken >= 95; }));
    spinUntil([] { return false; }, 200);
    EXPECT_LE(taken, 105);
    QElapsedTimer clock;
    clock.start();
    output->refuse(true);
    writer.join();
    EXPECT_LT(clock.elapsed(), 1000);
}

TEST_F(AudioOutputTest, ForgetsWhatWasNotHeard)
{
    open(AudioOutputSpec::Wav);
    EXPECT_TRUE(write(50, 440));
    ASSERT_TRUE(spinUntil([this] { return output->isAudible(); }));
    output->pause();
    output->flush();
    output->resume();
    EXPECT_TRUE(write(20, 880));
    output->finish();
    ASSERT_TRUE(spinUntil([this] { return drained; }));
    output->close();
    const ear::Sound sound = heard();
    EXPECT_NEAR(sound.seconds(), 2.4, 0.4);
    EXPECT_GT(sound.share(sound.samples.size() - 12000, 12000, 880), 0.95);
}

TEST_F(AudioOutputTest, AWriteWithoutSpaceComesBackWithinAQuarterOfASecond)
{
    open(AudioOutputSpec::Null);
    output->pause();
    EXPECT_TRUE(write(100));
    const std::vector<float> samples = tone(440, 0);
    QElapsedTimer clock;
    clock.start();
    Taken taken = Taken::All;
    while (taken == Taken::All) {
        clock.restart();
        taken = output->write(
            Format, reinterpret_cast<const char *>(samples.data()), samples.size() * sizeof(float));
    }
    EXPECT_EQ(taken, Taken::None);
    EXPECT_GE(clock.elapsed(), 200);
    EXPECT_LT(clock.elapsed(), 1000);
}

TEST_F(AudioOutputTest, RefusesAnotherFormatInTheMiddle)
{
    open(AudioOutputSpec::Null);
    EXPECT_TRUE(write(1));
    const std::vector<float> samples = tone(440, 0);
    EXPECT_EQ(output->write({44100, 2}, reinterpret_cast<const char *>(samples.data()),
                  samples.size() * sizeof(float)),
        Taken::Refused);
    EXPECT_EQ(output->format(), Format);
}

TEST_F(AudioOutputTest, AFolderThatIsNotThereIsAFailure)
{
    output = std::make_unique<AudioOutput>(std::make_shared<SoundOutput>(
        AudioOutputSpec {AudioOutputSpec::Wav, folder.filePath(QStringLiteral("no/out.wav"))}));
    QObject::connect(output.get(), &AudioOutput::failed, [this] { failed = true; });
    EXPECT_TRUE(spinUntil([this] { return failed; }));
    EXPECT_FALSE(write(200));
}

} // namespace
