// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SoundOutput.h"

#include "host/player/AudioOutput.h"
#include "media/GstHandles.h"
#include "tests/host/sound/TestSink.h"
#include "tests/support/Ear.h"
#include "tests/support/WorkerThread.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <cmath>
#include <fcntl.h>
#include <future>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr AudioFormat Stereo {48000, 2};
constexpr AudioFormat Mono {44100, 1};

/// What a ramp of 30 ms at 48 kHz changes from one frame to the next, at most, per height.
constexpr double RampStep = M_PI / 2 / (0.03 * 48000) * 1.02;

/// A constant: each change of it is what the output has done.
std::vector<float> constant(float level, double seconds, const AudioFormat &format = Stereo)
{
    return std::vector<float>(
        static_cast<std::size_t>(seconds * format.rate) * static_cast<std::size_t>(format.channels),
        level);
}

std::vector<float> tone(double level, double seconds, double frequency)
{
    std::vector<float> samples = constant(0, seconds);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(
            level * std::sin(2 * M_PI * frequency * static_cast<double>(i / 2) / Stereo.rate));
    }
    return samples;
}

/// How many frames at the end, or in a row anywhere, are below a level.
std::size_t longestBelow(const std::vector<float> &samples, float level)
{
    std::size_t longest = 0;
    std::size_t now = 0;
    for (const float sample : samples) {
        now = std::abs(sample) < level ? now + 1 : 0;
        longest = std::max(longest, now);
    }
    return longest;
}

double rms(const std::vector<float> &samples, std::size_t first, std::size_t count)
{
    double sum = 0;
    for (std::size_t i = first; i < first + count; ++i)
        sum += double(samples.at(i)) * double(samples.at(i));
    return std::sqrt(sum / static_cast<double>(count));
}

/// How often the threads of this process have woken up, but for the one that asks.
qint64 wakeUps()
{
    qint64 sum = 0;
    const QStringList threads
        = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        QFile status(QStringLiteral("/proc/self/task/%1/status").arg(thread));
        if (thread.toInt() == ::gettid() || !status.open(QIODevice::ReadOnly))
            continue;
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                sum += line.split(':').at(1).trimmed().toLongLong();
        }
    }
    return sum;
}

class Play {
public:
    explicit Play(const std::shared_ptr<SoundOutput> &sound)
        : output(std::make_unique<AudioOutput>(sound))
    {
        QObject::connect(output.get(), &AudioOutput::failed,
            [this](const TrString &problem) { complaint = problem.sourceText(); });
        QObject::connect(output.get(), &AudioOutput::drained, [this] { drained = true; });
    }
    bool write(const std::vector<float> &samples, const AudioFormat &format = Stereo) const
    {
        return output->write(format, reinterpret_cast<const char *>(samples.data()),
                   samples.size() * sizeof(float))
            == StreamConsumer::Taken::All;
    }
    bool isHeard() const
    {
        return spinUntil([this] { return output->isAudible(); });
    }

    std::unique_ptr<AudioOutput> output;
    QString complaint;
    bool drained = false;
};

class SoundOutputTest : public testing::Test {
protected:
    SoundOutputTest()
        : sink(path("device"))
        , sound(std::make_shared<SoundOutput>(
              AudioOutputSpec {AudioOutputSpec::Null, {}}, sink.maker()))
    {
    }
    QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }
    static void wait(int milliseconds)
    {
        spinUntil([] { return false; }, milliseconds);
    }
    /// Until the last tenth of a second that was heard is at that level.
    bool endsWith(double level, double tolerance) const
    {
        return spinUntil([&] {
            const std::vector<float> heard = sink.left();
            const auto isThere
                = [&](float each) { return std::abs(double(each) - level) <= tolerance; };
            return heard.size() > 4800 && std::all_of(heard.end() - 4800, heard.end(), isThere);
        });
    }
    /// The samples when the device has been released, so that all of them are there.
    std::vector<float> recorded()
    {
        EXPECT_TRUE(sound->close(std::chrono::seconds(5)));
        return sink.left();
    }
    Result<void, TrString> chosen(const AudioOutputSpec &spec) const
    {
        const auto done = std::make_shared<std::promise<Result<void, TrString>>>();
        std::future<Result<void, TrString>> result = done->get_future();
        sound->setOutput(spec, [done](const auto &each) { done->set_value(each); });
        return result.get();
    }

    const QTemporaryDir folder;
    const TestSink sink;
    const std::shared_ptr<SoundOutput> sound;
};

TEST_F(SoundOutputTest, WhatIsWrittenIsHeardAsItIs)
{
    Play play(sound);
    const std::vector<float> samples = tone(0.5, 1, 440);
    ASSERT_TRUE(play.write(samples));
    play.output->finish();
    ASSERT_TRUE(spinUntil([&] { return play.drained; }));
    play.output.reset();
    recorded();
    const std::vector<float> heard = sink.samples();
    ASSERT_EQ(heard.size(), samples.size());
    constexpr std::size_t Ramp = 1440 * 2;
    EXPECT_TRUE(std::equal(samples.begin() + Ramp, samples.end(), heard.begin() + Ramp));
    EXPECT_LT(std::abs(heard[2]), std::abs(samples[2]));
}

TEST_F(SoundOutputTest, NothingClicksWhenPlaysStartPauseResumeAndStop)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 8)));
    ASSERT_TRUE(play.isHeard());
    wait(250);
    for (int i = 0; i < 3; ++i) {
        play.output->pause();
        wait(i * 150);
        play.output->resume();
        ASSERT_TRUE(play.isHeard());
        wait(230);
    }
    play.output->close();
    const std::vector<float> heard = recorded();
    EXPECT_GT(heard.size(), 48000 / 2);
    EXPECT_NEAR(*std::max_element(heard.begin(), heard.end()), 0.5, 1e-6);
    EXPECT_LE(largestStep(heard), 0.5 * RampStep);
    EXPECT_LE(std::abs(heard.back()), 0.5 * RampStep) << "the stop is a ramp too";
}

TEST_F(SoundOutputTest, APauseIsHeardWithinATenthOfASecond)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 5)));
    ASSERT_TRUE(play.isHeard());
    wait(730);
    const auto frames = [this] { return static_cast<qint64>(sink.left().size()); };
    const qint64 before = frames();
    play.output->pause();
    wait(400);
    EXPECT_LE(frames() - before, 48 * 35);
    EXPECT_GE(frames() - before, 48 * 25);
}

TEST_F(SoundOutputTest, TheVolumeIsCubic)
{
    struct Row {
        int volume;
        bool muted;
        double amplitude;
    };
    // 79.37 would be one half.
    const Row rows[] = {{100, false, 1}, {79, false, 0.4930}, {80, false, 0.512},
        {50, false, 0.125}, {0, false, 0}, {100, true, 0}};
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.8F, 9)));
    ASSERT_TRUE(play.isHeard());
    for (const Row &row : rows) {
        sound->setVolume(row.volume, row.muted);
        EXPECT_TRUE(endsWith(0.8 * row.amplitude, 0.001)) << row.volume;
    }
    play.output->close();
    EXPECT_LE(largestStep(recorded()), 0.8 * RampStep);
}

TEST_F(SoundOutputTest, AVolumeThatWasSetBeforeHoldsFromTheFirstSample)
{
    sound->setVolume(50, false);
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.8F, 1)));
    play.output->finish();
    ASSERT_TRUE(spinUntil([&] { return play.drained; }));
    const std::vector<float> heard = recorded();
    EXPECT_NEAR(*std::max_element(heard.begin(), heard.end()), 0.1, 0.001);
}

TEST_F(SoundOutputTest, AFadeIsEvenAndStays)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.8F, 6)));
    ASSERT_TRUE(play.isHeard());
    wait(200);
    sound->fade(1, 0, std::chrono::milliseconds(1000));
    wait(500);
    EXPECT_NEAR(sink.left().back(), 0.8 * 0.125, 0.08);
    EXPECT_TRUE(endsWith(0, 0));
    sound->fade(1, 1, std::chrono::milliseconds(0));
    EXPECT_TRUE(endsWith(0.8, 1e-6));
    play.output->close();
    EXPECT_LE(largestStep(recorded()), 0.8 * RampStep);
}

struct Switch {
    AudioFormat from;
    AudioFormat to;
};

class SwitchTest : public SoundOutputTest, public testing::WithParamInterface<Switch> { };

TEST_P(SwitchTest, GoesOnWithoutAGapOrAStep)
{
    Play first(sound);
    ASSERT_TRUE(first.write(constant(0.5F, 5, GetParam().from), GetParam().from));
    ASSERT_TRUE(first.isHeard());
    wait(430);
    Play second(sound);
    EXPECT_TRUE(first.output->isAudible());
    ASSERT_TRUE(second.write(constant(0.5F, 5, GetParam().to), GetParam().to));
    ASSERT_TRUE(second.isHeard());
    first.output->close();
    wait(430);
    second.output->close();
    const std::vector<float> samples = (recorded(), sink.samples());
    EXPECT_EQ(sink.made(), 1);
    EXPECT_GT(samples.size(), std::size_t(GetParam().from.rate * GetParam().from.channels) * 3 / 4);
    // Between the first rise and the last fall it never moves.
    const auto isFull = [](float sample) { return sample > 0.495F; };
    const auto begin = std::find_if(samples.begin(), samples.end(), isFull);
    const auto end = std::find_if(samples.rbegin(), samples.rend(), isFull).base();
    EXPECT_GE(*std::min_element(begin, end), 0.48F);
    EXPECT_LE(*std::max_element(begin, end), 0.52F);
    EXPECT_LE(longestBelow({begin, end}, 0.48F), 0U);
}

INSTANTIATE_TEST_SUITE_P(Formats, SwitchTest,
    testing::Values(Switch {Stereo, Stereo}, Switch {Stereo, Mono}, Switch {Mono, Stereo},
        Switch {Stereo, AudioFormat {44100, 2}}, Switch {Mono, AudioFormat {22050, 1}}));

TEST_F(SoundOutputTest, AnEarlierPlayDoesNotComeBack)
{
    Play first(sound);
    Play second(sound);
    ASSERT_TRUE(second.write(constant(0.25F, 5)));
    ASSERT_TRUE(second.isHeard());
    ASSERT_TRUE(first.write(constant(0.9F, 5)));
    wait(500);
    EXPECT_FALSE(first.output->isAudible());
    second.output->close();
    const std::vector<float> heard = recorded();
    EXPECT_NEAR(*std::max_element(heard.begin(), heard.end()), 0.25, 1e-6);
}

TEST_F(SoundOutputTest, AnUnderrunIsARampAndLosesNothing)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 0.7)));
    ASSERT_TRUE(play.isHeard());
    ASSERT_TRUE(spinUntil([&] { return !play.output->isAudible(); }));
    wait(300);
    ASSERT_TRUE(play.write(constant(0.5F, 1.1)));
    ASSERT_TRUE(play.isHeard());
    play.output->finish();
    ASSERT_TRUE(spinUntil([&] { return play.drained; }));
    const std::vector<float> heard = recorded();
    EXPECT_EQ(heard.size(), std::size_t(48000 * 1.8));
    EXPECT_LE(largestStep(heard), 0.5 * RampStep);
}

TEST_F(SoundOutputTest, WhatIsWrittenAfterAFlushBeginsAnewThoughAllWasWritten)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 5)));
    play.output->finish();
    ASSERT_TRUE(play.isHeard());
    wait(300);
    play.output->flush();
    ASSERT_TRUE(spinUntil([&] { return !play.output->isAudible(); }));
    ASSERT_TRUE(play.write(constant(0.25F, 0.2)));
    EXPECT_FALSE(spinUntil([&] { return play.output->isAudible() || play.drained; }, 300));
    ASSERT_TRUE(play.write(constant(0.25F, 0.4)));
    ASSERT_TRUE(play.isHeard());
    EXPECT_FALSE(play.drained);
    play.output->finish();
    ASSERT_TRUE(spinUntil([&] { return play.drained; }));
    EXPECT_LE(largestStep(recorded()), 0.5 * RampStep);
}

TEST_F(SoundOutputTest, ASupplyThatKeepsUpIsNotInterrupted)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 0.32)));
    ASSERT_TRUE(play.isHeard());
    QElapsedTimer clock;
    clock.start();
    qint64 written = 0;
    while (written < 2000) {
        wait(20);
        for (; written < clock.elapsed(); written += 20)
            ASSERT_TRUE(play.write(constant(0.5F, 0.02)));
        ASSERT_TRUE(play.output->isAudible()) << written;
    }
    play.output->close();
    const std::vector<float> heard = recorded();
    const std::vector<float> within(heard.begin() + 2000, heard.end() - 2000);
    EXPECT_EQ(longestBelow(within, 0.49F), 0U);
}

TEST_F(SoundOutputTest, TheDeviceIsReleasedAfterTheLastPlayAndNotBetweenPlays)
{
    for (int i = 0; i < 3; ++i) {
        Play play(sound);
        ASSERT_TRUE(play.write(constant(0.5F, 2)));
        ASSERT_TRUE(play.isHeard());
    }
    EXPECT_EQ(sink.made(), 1);
    wait(1500);
    EXPECT_EQ(sink.open(), 1);
    EXPECT_TRUE(spinUntil([this] { return sink.open() == 0; }, 4000));
    Play again(sound);
    ASSERT_TRUE(again.write(constant(0.5F, 2)));
    EXPECT_TRUE(again.isHeard());
    EXPECT_EQ(sink.made(), 2);
}

TEST_F(SoundOutputTest, ThreadsWakeUpTenTimesASecondAndNotAtAllInAPause)
{
    const auto silent = std::make_shared<SoundOutput>(AudioOutputSpec {AudioOutputSpec::Null, {}});
    Play play(silent);
    ASSERT_TRUE(play.write(constant(0.5F, 9.9)));
    ASSERT_TRUE(play.isHeard());
    wait(300);
    const auto within = [](int milliseconds) {
        const qint64 before = wakeUps();
        wait(milliseconds);
        return wakeUps() - before;
    };
    const qint64 playing = within(4000);
    EXPECT_GE(playing, 20);
    EXPECT_LE(playing, 44);
    play.output->pause();
    wait(500);
    EXPECT_EQ(within(2000), 0);
    play.output->close();
    wait(3500);
    // A thread that ends takes its number with it.
    EXPECT_LE(within(1000), 0);
}

TEST_F(SoundOutputTest, AnotherOutputTakesOverWithinAPlay)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 5)));
    ASSERT_TRUE(play.isHeard());
    wait(430);
    EXPECT_TRUE(chosen({AudioOutputSpec::Null, path("other")}));
    EXPECT_EQ(sound->spec().file, path("other"));
    wait(430);
    play.output->pause();
    play.output->resume();
    wait(330);
    play.output->close();
    const std::vector<float> before = recorded();
    const std::vector<float> after = rawSamples(path("other"));
    EXPECT_NEAR(double(before.size()) / 48000, 0.5, 0.15);
    EXPECT_NEAR(double(after.size()) / 2 / 48000, 0.85, 0.25);
    EXPECT_LE(largestStep(before), 0.5 * RampStep);
    EXPECT_LE(std::abs(before.back()), 0.5 * RampStep);
    EXPECT_LE(std::abs(after.front()), 0.5 * RampStep);
    EXPECT_EQ(sink.open(), 0);
}

TEST_F(SoundOutputTest, AnOutputThatDoesNotOpenLeavesTheOldOneAsItIs)
{
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 5)));
    ASSERT_TRUE(play.isHeard());
    wait(230);
    const auto result = chosen({AudioOutputSpec::Null, path("no/folder")});
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().sourceText(), QStringLiteral("The sound output does not work."));
    EXPECT_EQ(sound->spec().file, QString());
    const std::size_t size = sink.left().size();
    EXPECT_TRUE(spinUntil([&] { return sink.left().size() > size + 9600; }));
    EXPECT_EQ(play.complaint, QString());
    play.output->close();
    const std::vector<float> heard = recorded();
    EXPECT_EQ(longestBelow({heard.begin() + 2000, heard.end() - 2000}, 0.49F), 0U);
}

TEST_F(SoundOutputTest, AnOutputThatHangsHoldsNothingUp)
{
    // A FIFO without a reader: opening it for writing blocks.
    const QByteArray fifo = QFile::encodeName(path("fifo"));
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 8)));
    ASSERT_TRUE(play.isHeard());
    std::atomic<int> answers {0};
    sound->setOutput({AudioOutputSpec::Null, path("fifo")},
        [&answers](const Result<void, TrString> &) { ++answers; });
    const auto grows = [this](int milliseconds = 10000) {
        const std::size_t size = sink.left().size();
        return spinUntil([&] { return sink.left().size() > size + 9600; }, milliseconds);
    };
    EXPECT_TRUE(grows());
    play.output->pause();
    wait(300);
    EXPECT_FALSE(grows(1000));
    play.output->resume();
    EXPECT_TRUE(grows());
    play.output->close();
    EXPECT_EQ(answers, 0);
    const int reader = ::open(fifo.constData(), O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(spinUntil([&] { return answers == 1; }));
    EXPECT_TRUE(sound->close(std::chrono::seconds(5)));
    ::close(reader);
}

TEST_F(SoundOutputTest, AnOutputThatIsChosenWhileNothingPlaysIsThatOfTheNextPlay)
{
    EXPECT_TRUE(chosen({AudioOutputSpec::Null, path("other")}));
    EXPECT_EQ(sink.made(), 0);
    Play play(sound);
    ASSERT_TRUE(play.write(constant(0.5F, 1)));
    play.output->finish();
    ASSERT_TRUE(spinUntil([&] { return play.drained; }));
    recorded();
    EXPECT_EQ(rawSamples(path("other")).size(), 96000U);
}

TEST_F(SoundOutputTest, AFileBeginsAnewWithTheFirstSampleOfThePlayThatTakesOver)
{
    const auto file
        = std::make_shared<SoundOutput>(AudioOutputSpec {AudioOutputSpec::Wav, path("out.wav")});
    Play first(file);
    ASSERT_TRUE(first.write(tone(0.5, 5, 440)));
    ASSERT_TRUE(first.isHeard());
    wait(600);
    Play second(file);
    wait(100);
    ASSERT_TRUE(second.write(tone(0.5, 1, 880)));
    second.output->finish();
    ASSERT_TRUE(second.isHeard());
    first.output->close();
    ASSERT_TRUE(spinUntil([&] { return second.drained; }));
    second.output->close();
    QFile wav(path("out.wav"));
    ASSERT_TRUE(wav.open(QIODevice::ReadOnly));
    const ear::Sound heard = ear::decoded(wav.readAll().toStdString());
    EXPECT_EQ(heard.error, "");
    EXPECT_NEAR(heard.seconds(), 1, 0.01);
    EXPECT_GT(heard.share(0, heard.samples.size(), 880), 0.95);
}

TEST_F(SoundOutputTest, StationsTwelveDecibelsApartAreEvenAfterTenSeconds)
{
    const TestSink other(path("quiet"));
    const auto quiet
        = std::make_shared<SoundOutput>(AudioOutputSpec {AudioOutputSpec::Null, {}}, other.maker());
    sound->setEven(true);
    quiet->setEven(true);
    Play loudPlay(sound);
    Play quietPlay(quiet);
    ASSERT_TRUE(loudPlay.write(tone(0.5, 9.9, 997)));
    ASSERT_TRUE(quietPlay.write(tone(0.125, 9.9, 997)));
    ASSERT_TRUE(loudPlay.isHeard());
    wait(2000);
    ASSERT_TRUE(loudPlay.write(tone(0.5, 1.6, 997)));
    ASSERT_TRUE(quietPlay.write(tone(0.125, 1.6, 997)));
    wait(9200);
    const std::vector<float> loud = sink.left();
    const std::vector<float> low = other.left();
    constexpr std::size_t Second = 48000;
    ASSERT_GT(loud.size(), 11 * Second);
    ASSERT_GT(low.size(), 11 * Second);
    // The same sound, so the difference in level is that in loudness.
    const auto difference = [&](std::size_t at) {
        return 20 * std::log10(rms(loud, at, Second / 50) / rms(low, at, Second / 50));
    };
    // Both begin with the same ramp; the loud one is turned down from then on.
    EXPECT_GT(difference(0), 8);
    EXPECT_NEAR(difference(10 * Second), 0, 2);
    EXPECT_LE(*std::max_element(loud.begin(), loud.end()), 1);
}

} // namespace
