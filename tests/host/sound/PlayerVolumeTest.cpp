// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/PlayerVolume.h"

#include "api/nodes/CMReply.h"
#include "api/nodes/CMRequest.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRoles.h"
#include "host/sound/SoundOutput.h"
#include "tests/host/sound/TestSink.h"
#include "tests/support/WorkerThread.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

class PlayerVolumeTest : public testing::Test {
protected:
    PlayerVolumeTest()
        : sink(folder.filePath(QStringLiteral("device")))
        , sound(std::make_shared<SoundOutput>(
              AudioOutputSpec {AudioOutputSpec::Null, {}}, sink.maker()))
    {
        values.define(
            playerVolumePath(), VeskValue::fromInt(60), CMValuesWorker::Writable, TrString());
        values.define(
            playerMutePath(), VeskValue::fromBool(false), CMValuesWorker::Writable, TrString());
        values.setKeep(
            [this](const CMPath &path, const VeskValue &value, const CMValuesWorker::Kept &kept) {
                if (path == playerVolumePath())
                    kept_.append(value.int_());
                kept(CMError());
            });
    }
    static void wait(int milliseconds)
    {
        spinUntil([] { return false; }, milliseconds);
    }

    const QTemporaryDir folder;
    const TestSink sink;
    const std::shared_ptr<SoundOutput> sound;
    CMValuesWorker values;
    QList<int> kept_;
};

TEST_F(PlayerVolumeTest, BeginsWithWhatTheSettingsSay)
{
    values.setValue(playerMutePath(), VeskValue::fromBool(true));
    const PlayerVolume volume(sound, &values);
    EXPECT_EQ(volume.volume(), 60);
    EXPECT_TRUE(volume.isMuted());
    EXPECT_TRUE(kept_.isEmpty());
}

TEST_F(PlayerVolumeTest, StaysWithinItsBounds)
{
    PlayerVolume volume(sound, &values);
    volume.setVolume(101);
    EXPECT_EQ(volume.volume(), 100);
    volume.setVolume(-1);
    EXPECT_EQ(volume.volume(), 0);
}

TEST_F(PlayerVolumeTest, ManyChangesAreKeptOnceASecond)
{
    PlayerVolume volume(sound, &values);
    int changes = 0;
    QObject::connect(&volume, &PlayerVolume::changed, [&changes] { ++changes; });
    for (int i = 0; i < 50; ++i)
        volume.setVolume(i);
    EXPECT_EQ(changes, 50);
    EXPECT_EQ(kept_, QList<int>({0}));
    EXPECT_TRUE(spinUntil([this] { return kept_.size() > 1; }, 2000));
    wait(1500);
    EXPECT_EQ(kept_, QList<int>({0, 49}));
    EXPECT_EQ(values.value(playerVolumePath()).int_(), 49);
}

TEST_F(PlayerVolumeTest, IsKeptBeforeTheEnd)
{
    PlayerVolume volume(sound, &values);
    volume.setVolume(10);
    volume.setVolume(20);
    volume.keep();
    EXPECT_EQ(kept_, QList<int>({10, 20}));
}

TEST_F(PlayerVolumeTest, FollowsItsSetting)
{
    PlayerVolume volume(sound, &values);
    int changes = 0;
    QObject::connect(&volume, &PlayerVolume::changed, [&changes] { ++changes; });
    values.setValue(playerVolumePath(), VeskValue::fromInt(33));
    EXPECT_TRUE(spinUntil([&] { return volume.volume() == 33; }));
    values.setValue(playerMutePath(), VeskValue::fromBool(true));
    EXPECT_TRUE(spinUntil([&] { return volume.isMuted(); }));
    EXPECT_EQ(changes, 2);
}

TEST_F(PlayerVolumeTest, FollowsTheDevice)
{
    PlayerVolume volume(sound, &values);
    Q_EMIT sound->volumeFollowed(25, true);
    EXPECT_EQ(volume.volume(), 25);
    EXPECT_TRUE(volume.isMuted());
    EXPECT_EQ(kept_, QList<int>({25}));
}

TEST_F(PlayerVolumeTest, ADiskThatFailsLeavesTheVolumeAsItIs)
{
    values.setKeep([](const CMPath &, const VeskValue &, const CMValuesWorker::Kept &kept) {
        kept(CMError(TrString("Host", "full")));
    });
    PlayerVolume volume(sound, &values);
    volume.setVolume(5);
    wait(100);
    EXPECT_EQ(volume.volume(), 5);
}

} // namespace
