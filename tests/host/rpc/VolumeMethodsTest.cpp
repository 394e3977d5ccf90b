// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/VolumeMethods.h"

#include "api/nodes/CMValuesWorker.h"
#include "api/web/VeskJson.h"
#include "host/player/MediaPlayer.h"
#include "host/player/PlayLogic.h"
#include "host/rpc/PlayerMethods.h"
#include "host/sound/PlayerVolume.h"
#include "host/sound/SoundOutput.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

namespace {

class SilentPlayer : public MediaPlayer {
public:
    void play(const StreamSource &) override { }
    void pause() override { }
    void resume() override { }
    void stop() override { }
    void networkIsBack() override { }
};

class VolumeMethodsTest : public testing::Test {
protected:
    VolumeMethodsTest()
    {
        values.define(playerVolumePath(), VeskValue::fromInt(100), CMValuesWorker::Writable);
        values.define(playerMutePath(), VeskValue::fromBool(false), CMValuesWorker::Writable);
        volume = std::make_unique<PlayerVolume>(
            std::make_shared<SoundOutput>(AudioOutputSpec {AudioOutputSpec::Null, {}}), &values);
        methods = std::make_unique<VolumeMethods>(&rpc, volume.get());
    }
    QVariantHash call(const QByteArray &method, const QByteArray &params)
    {
        QByteArray answer;
        rpc.handle("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"player." + method
                + "\",\"params\":" + params + "}",
            {}, [&answer](const QByteArray &bytes) { answer = bytes; });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        VeskError error;
        return VeskJson::parse(answer, error).toHash();
    }
    /// "40" or "40 mute", or the error's message.
    QString result(const QByteArray &method, const QByteArray &params)
    {
        const QVariantHash answer = call(method, params);
        const QVariantHash result = answer.value(text("result")).toHash();
        if (result.isEmpty())
            return answer.value(text("error")).toHash().value(text("message")).toString();
        EXPECT_EQ(result.size(), 2);
        return result.value(text("volume")).toString()
            + (result.value(text("mute")).toBool() ? text(" mute") : QString());
    }

    CMValuesWorker values;
    JsonRpcDispatcher rpc;
    std::unique_ptr<PlayerVolume> volume;
    std::unique_ptr<VolumeMethods> methods;
};

TEST_F(VolumeMethodsTest, SetAndChangeAndTell)
{
    struct Row {
        const char *method;
        const char *params;
        const char *result;
    };
    const Row rows[] = {
        {"volume", "{}", "100"},
        {"volume", R"({"volume": 40})", "40"},
        {"volume", R"({"change": 5})", "45"},
        {"volume", R"({"change": -100})", "0"},
        {"volume", R"({"change": 100})", "100"},
        {"volume", R"({"volume": 50, "mute": true})", "50 mute"},
        {"volume", R"({"change": 1})", "51 mute"},
        {"volume", R"({"mute": null, "volume": null})", "51 mute"},
        {"mute", "{}", "51"},
        {"mute", "{}", "51 mute"},
        {"mute", R"({"mute": true})", "51 mute"},
        {"mute", R"({"mute": false})", "51"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(result(row.method, row.params), text(row.result)) << row.params;
}

TEST_F(VolumeMethodsTest, RefuseWhatIsOutOfBoundsOrOfAnotherType)
{
    for (const char *params : {R"({"volume": 101})", R"({"volume": -1})", R"({"volume": "40"})",
             R"({"volume": 40.5})", R"({"change": 101})", R"({"change": 1e30})", R"({"mute": 1})",
             R"({"volume": 40, "mute": "no"})"}) {
        const QVariantHash answer = call("volume", params);
        EXPECT_EQ(answer.value(text("error")).toHash().value(text("code")).toInt(), -32602)
            << params;
    }
    EXPECT_EQ(
        call("mute", R"({"mute": "x"})").value(text("error")).toHash().value(text("code")).toInt(),
        -32602);
    EXPECT_EQ(volume->volume(), 100);
    EXPECT_FALSE(volume->isMuted());
}

TEST_F(VolumeMethodsTest, ClientsLearnOfChanges)
{
    SilentPlayer player;
    PlayLogic logic(&player);
    PlayerMethods state(&rpc, &logic);
    state.setVolume(volume.get());
    QList<QVariantHash> notified;
    QObject::connect(&state, &PlayerMethods::changed,
        [&](const QVariant &each) { notified.append(each.toHash()); });
    const QVariantHash shown = call("state", "{}").value(text("result")).toHash();
    EXPECT_EQ(shown.value(text("volume")).toInt(), 100);
    EXPECT_EQ(shown.value(text("mute")), QVariant(false));
    call("volume", R"({"volume": 30})");
    ASSERT_TRUE(spinUntil([&] { return notified.size() == 1; }));
    EXPECT_EQ(notified.first().value(text("volume")).toInt(), 30);
    call("volume", R"({"volume": 30})");
    call("mute", "{}");
    ASSERT_TRUE(spinUntil([&] { return notified.size() == 2; }));
    EXPECT_EQ(notified.last().value(text("mute")), QVariant(true));
}

} // namespace
