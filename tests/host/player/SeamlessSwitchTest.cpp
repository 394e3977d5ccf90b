// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamPlayer.h"

#include "api/web/HttpClient.h"
#include "tests/host/player/Recording.h"
#include "tests/host/sound/TestSink.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/WorkerThread.h"

#include <QTemporaryDir>
#include <QThread>

#include <cmath>
#include <gmock/gmock.h>

namespace {

using Response = ScriptedServer::Response;
using End = ScriptedServer::End;

constexpr int Rate = 44100;
/// A whole number of periods of both tones.
constexpr std::size_t Window = Rate / 20;

/// The loudness of one tone in each twentieth of a second, of full scale.
std::vector<double> levels(const std::vector<float> &samples, double frequency)
{
    std::vector<double> levels;
    for (std::size_t begin = 0; begin + Window <= samples.size(); begin += Window) {
        double real = 0;
        double imaginary = 0;
        for (std::size_t i = begin; i < begin + Window; ++i) {
            const double phase = 2 * M_PI * frequency * static_cast<double>(i) / Rate;
            real += double(samples[i]) * std::cos(phase);
            imaginary += double(samples[i]) * std::sin(phase);
        }
        levels.push_back(std::hypot(real, imaginary) * 2 / Window);
    }
    return levels;
}

/// How many of them at most follow each other below half of the tone's own level.
std::size_t longestSilence(const std::vector<double> &low, const std::vector<double> &high)
{
    std::size_t longest = 0;
    std::size_t now = 0;
    for (std::size_t i = 0; i < low.size(); ++i) {
        now = std::hypot(low[i], high[i]) < 0.12 ? now + 1 : 0;
        longest = std::max(longest, now);
    }
    return longest;
}

/// Stations at "/low" (440 Hz) and "/high" (880 Hz); "/late" is high after 0.8 s, "/silent" sends
/// nothing, and "/gone" is not there.
class SeamlessSwitchTest : public testing::Test {
protected:
    SeamlessSwitchTest()
        : low(recordedTone("lamemp3enc", 440, 20))
        , high(recordedTone("lamemp3enc", 880, 20))
        , server([this](const ScriptedServer::Request &request) { return answer(request); })
        , sink(folder.filePath(QStringLiteral("device")))
        , sound(std::make_shared<SoundOutput>(
              AudioOutputSpec {AudioOutputSpec::Null, {}}, sink.maker()))
        , player(sound)
    {
        QObject::connect(&player, &MediaPlayer::audibleChanged,
            [this](bool now) { changes += now ? 'a' : 's'; });
        QObject::connect(&player, &MediaPlayer::gaveUp, [this] { changes += 'g'; });
    }
    Response answer(const ScriptedServer::Request &request) const
    {
        if (request.path() == "/late")
            QThread::msleep(800);
        if (request.path() == "/gone")
            return {404, {}, {}, End::Complete, 0};
        if (request.path() == "/silent")
            return {200, {}, {}, End::StallBeforeHead, 0};
        return {200, request.path() == "/low" ? low : high, {}, End::Stall, INT_MAX};
    }
    void play(const char *path)
    {
        changes.clear();
        StreamSource source;
        source.url = QUrl(QStringLiteral("http://127.0.0.1:%1%2")
                              .arg(server.port())
                              .arg(QString::fromLatin1(path)));
        source.live = true;
        player.play(source);
    }
    bool isHeard()
    {
        return spinUntil([this] { return changes.endsWith('a'); });
    }
    static void wait(int milliseconds)
    {
        spinUntil([] { return false; }, milliseconds);
    }
    bool grows(int milliseconds) const
    {
        const std::size_t before = sink.samples().size();
        return spinUntil(
            [&] { return sink.samples().size() > before + std::size_t(Rate) / 5; }, milliseconds);
    }

    const QByteArray low;
    const QByteArray high;
    ScriptedServer server;
    const QTemporaryDir folder;
    const TestSink sink;
    const std::shared_ptr<SoundOutput> sound;
    StreamPlayer player;
    QByteArray changes;
};

TEST_F(SeamlessSwitchTest, TheOldStationIsHeardUntilTheNewOneHasSound)
{
    play("/low");
    ASSERT_TRUE(isHeard());
    wait(700);
    play("/late");
    EXPECT_FALSE(spinUntil([this] { return !changes.isEmpty(); }, 500))
        << "what is heard is not the new station";
    ASSERT_TRUE(isHeard());
    EXPECT_EQ(changes, "a");
    wait(800);
    EXPECT_TRUE(player.waitForEnd(std::chrono::seconds(5)));

    const std::vector<float> samples = sink.left();
    const std::vector<double> lows = levels(samples, 440);
    const std::vector<double> highs = levels(samples, 880);
    // But for the ramps at both ends.
    EXPECT_LE(longestSilence(lows, highs), 1U);
    const auto isThere = [](double level) { return level > 0.03; };
    const auto overlap = [&] {
        int both = 0;
        for (std::size_t i = 0; i < lows.size(); ++i)
            both += isThere(lows[i]) && isThere(highs[i]);
        return both;
    }();
    EXPECT_LE(overlap, 2) << "they cross over within a ramp";
    const auto lowSeconds
        = double(std::count_if(lows.begin(), lows.end(), isThere)) * Window / Rate;
    EXPECT_GT(lowSeconds, 1.4);
    EXPECT_GT(double(std::count_if(highs.begin(), highs.end(), isThere)) * Window / Rate, 0.6);
}

TEST_F(SeamlessSwitchTest, AStopEndsBoth)
{
    play("/low");
    ASSERT_TRUE(isHeard());
    play("/silent");
    EXPECT_TRUE(grows(10000));
    player.stop();
    wait(300);
    EXPECT_FALSE(grows(500));
    EXPECT_EQ(changes, "");
}

TEST_F(SeamlessSwitchTest, ThereIsNeverMoreThanOneOldStation)
{
    play("/low");
    ASSERT_TRUE(isHeard());
    for (int i = 0; i < 4; ++i) {
        play("/silent");
        wait(50);
    }
    EXPECT_TRUE(grows(10000));
    play("/high");
    ASSERT_TRUE(isHeard());
    wait(500);
    EXPECT_TRUE(player.waitForEnd(std::chrono::seconds(5)));
    const std::vector<double> lows = levels(sink.left(), 440);
    EXPECT_LT(*std::max_element(lows.end() - 8, lows.end()), 0.01);
}

TEST_F(SeamlessSwitchTest, AStationThatFailsLeavesItToTheCallerToEndTheOldOne)
{
    play("/low");
    ASSERT_TRUE(isHeard());
    play("/gone");
    ASSERT_TRUE(spinUntil([this] { return changes == "g"; }));
    EXPECT_TRUE(grows(10000));
    player.stop();
    wait(300);
    EXPECT_FALSE(grows(500));
}

TEST_F(SeamlessSwitchTest, WithoutTheSettingTheOldStationEndsAtOnce)
{
    player.setSeamless(false);
    play("/low");
    ASSERT_TRUE(isHeard());
    wait(300);
    play("/silent");
    wait(300);
    EXPECT_FALSE(grows(500));
}

TEST_F(SeamlessSwitchTest, AStationThatIsPausedDoesNotComeBack)
{
    play("/low");
    ASSERT_TRUE(isHeard());
    player.pause();
    wait(300);
    play("/silent");
    EXPECT_FALSE(grows(700));
}

} // namespace
