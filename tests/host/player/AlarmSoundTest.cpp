// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AlarmSound.h"

#include "host/player/StreamPlayer.h"
#include "tests/support/Ear.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gmock/gmock.h>

#include <cmath>

namespace {

constexpr int Rate = AlarmSound::Format.rate;

/// Of one second from \a second on.
double loudness(int second)
{
    double sum = 0;
    const std::vector<float> samples = AlarmSound::samples(std::int64_t(second) * Rate, Rate);
    for (const float sample : samples)
        sum += double(sample) * sample;
    return std::sqrt(sum / double(samples.size()));
}

TEST(AlarmSoundTest, BecomesLouderForAMinuteAndStaysLoud)
{
    // The same second of the melody each time.
    EXPECT_GT(loudness(12), 1.3 * loudness(0));
    EXPECT_GT(loudness(36), 2 * loudness(12));
    EXPECT_GT(loudness(60), 2 * loudness(36));
    EXPECT_NEAR(loudness(72), loudness(60), 0.001);
    EXPECT_GT(loudness(60), 0.1); // -20 dB
    EXPECT_LT(loudness(0), 0.02);
}

TEST(AlarmSoundTest, NeverClipsAndHasNoClicks)
{
    const std::vector<float> samples = AlarmSound::samples(60 * Rate, 6 * Rate);
    float last = samples.front();
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        ASSERT_LE(std::abs(samples[i]), 1.0F);
        ASSERT_EQ(samples[i], samples[i + 1]);
        ASSERT_LT(std::abs(samples[i] - last), 0.25F) << i;
        last = samples[i];
    }
}

TEST(AlarmSoundTest, PartsMakeTheSameWhole)
{
    const std::vector<float> whole = AlarmSound::samples(0, 3 * Rate);
    const std::vector<float> second = AlarmSound::samples(Rate, Rate);
    EXPECT_TRUE(std::equal(second.begin(), second.end(), whole.begin() + 2 * Rate));
}

TEST(AlarmSoundTest, IsAtItsAddressOnly)
{
    EXPECT_TRUE(AlarmSound::isAt(QUrl(AlarmSound::address())));
    EXPECT_FALSE(AlarmSound::isAt(QUrl()));
    EXPECT_FALSE(AlarmSound::isAt(QUrl(text("http://vesk-alarm/bell"))));
}

TEST(AlarmSoundTest, IsPlayedThroughTheOutputPausedAndStopped)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(text("alarm.wav"));
    StreamPlayer player(*AudioOutputSpec::parse(text("wav:") + file));
    int audible = 0;
    QObject::connect(
        &player, &MediaPlayer::audibleChanged, [&](bool isAudible) { audible += int(isAudible); });
    player.play({QUrl(AlarmSound::address())});
    EXPECT_TRUE(spinUntil([&] { return audible == 1; }));
    EXPECT_FALSE(spinUntil([] { return false; }, 1500));
    player.pause();
    player.resume();
    EXPECT_TRUE(spinUntil([&] { return audible == 2; }));
    EXPECT_TRUE(player.waitForEnd(std::chrono::seconds(10)));
    QFile recording(file);
    ASSERT_TRUE(recording.open(QFile::ReadOnly));
    const ear::Sound sound = ear::decoded(recording.readAll().toStdString());
    EXPECT_EQ(sound.error, "");
    EXPECT_GT(sound.seconds(), 1.4);
    EXPECT_GT(sound.loudness(), 0.003);
}

} // namespace
