// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfig.h"

#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/VeskJson.h"
#include "host/rpc/JsonRpcDispatcher.h"
#include "host/sound/PlayerVolume.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;

HostOptions optionsWith(const QVector<QPair<const char *, VeskValue>> &pinned, int line = 3)
{
    HostOptions options;
    options.configFile = text("/etc/vesk/vesk.conf");
    for (const auto &each : pinned) {
        const QString path = text(each.first);
        options.pinned.append({CMPath::fromEncoded(path), each.second});
        options.given[path] = {{plainValue(each.second)}, options.configFile, line};
    }
    return options;
}

class HostConfigTest : public testing::Test {
protected:
    void start(const HostOptions &options)
    {
        options.values.defineIn(&values);
        config = std::make_unique<HostConfig>(options, &values);
    }
    QVariantHash entry(const char *key)
    {
        for (const QVariant &each : config->list()) {
            if (each.toHash().value(text("key")) == text(key))
                return each.toHash();
        }
        return {};
    }
    /// "value (origin)".
    std::string shown(const char *key)
    {
        const QVariantHash found = entry(key);
        return (found.value(text("value")).toString() + text(" (")
            + found.value(text("origin")).toString() + QLatin1Char(')'))
            .toStdString();
    }
    int volume() { return values.value(playerVolumePath()).int_(); }

    CMValuesWorker values;
    std::unique_ptr<HostConfig> config;
};

TEST_F(HostConfigTest, TellsWhereWhatHoldsComesFrom)
{
    HostOptions options = optionsWith({{"settings:player/volume", VeskValue::fromInt(40)},
        {"network:connected", VeskValue::fromBool(true)}});
    options.given[text("network:connected")].file.clear();
    options.given[text("logLevel")] = {{text("warn")}, options.configFile, 7};
    options.given[text("listen")] = {{text("[::]:1"), text("0.0.0.0:1")}, {}, 0};
    start(options);
    values.setValue(VeskUILanguagePath(), VeskValue::fromString(text("de")));
    EXPECT_EQ(shown("settings:player/volume"), "40 (file)");
    EXPECT_EQ(entry("settings:player/volume").value(text("line")).toInt(), 3);
    EXPECT_EQ(entry("settings:player/volume").value(text("file")), options.configFile);
    EXPECT_EQ(shown("network:connected"), "true (command line)");
    EXPECT_EQ(shown("settings:ui/language"), "de (setting)");
    EXPECT_EQ(shown("settings:player/mute"), "false (default)");
    EXPECT_EQ(shown("logLevel"), "warn (file)");
    EXPECT_EQ(shown("connections"), "64 (default)");
    EXPECT_EQ(entry("listen").value(text("value")).toList().size(), 2);
    EXPECT_EQ(entry("listen").value(text("origin")), text("command line"));
    EXPECT_TRUE(entry("system:memberId").isEmpty());
}

TEST_F(HostConfigTest, TellsEveryOption)
{
    start({});
    for (const HostOption &option : hostOptions()) {
        const bool isListed = option.kind != HostOption::Assignment;
        EXPECT_EQ(!entry(option.key).isEmpty(), isListed) << option.key;
    }
}

TEST_F(HostConfigTest, HidesSecrets)
{
    EXPECT_TRUE(isSecretValue(CMPath::fromEncoded(text("settings:tunein/partnerId"))));
    EXPECT_TRUE(isSecretValue(CMPath::fromEncoded(text("settings:radio/password"))));
    EXPECT_TRUE(isSecretValue(CMPath::fromEncoded(text("settings:radio/apiKey"))));
    EXPECT_FALSE(isSecretValue(playerVolumePath()));
    HostOptions options;
    PluginDescriptor descriptor;
    descriptor.id = text("radio");
    SettingDeclaration secret;
    secret.path = CMPath::fromEncoded(text("settings:radio/password"));
    secret.initial = VeskValue::fromString(QString());
    descriptor.settings = {secret};
    ASSERT_TRUE(options.values.add(descriptor));
    start(options);
    EXPECT_EQ(shown("settings:radio/password"), " (default)");
    values.setValue(secret.path, VeskValue::fromString(text("S3cret")));
    EXPECT_EQ(shown("settings:radio/password"), "*** (setting)");
}

TEST_F(HostConfigTest, TakesOverValues)
{
    start(optionsWith({{"settings:player/volume", VeskValue::fromInt(40)}}));
    EXPECT_EQ(volume(), 40);
    config->setUnpinned({{playerVolumePath(), VeskValue::fromInt(70)}});
    config->reconfigure(optionsWith({{"settings:player/volume", VeskValue::fromInt(50)}}));
    EXPECT_EQ(volume(), 50);
    EXPECT_FALSE(values.setValue(playerVolumePath(), VeskValue::fromInt(1))) << "still pinned";
    config->reconfigure({});
    EXPECT_EQ(volume(), 70) << "as it was kept";
    EXPECT_EQ(shown("settings:player/volume"), "70 (setting)");
    EXPECT_TRUE(values.setValue(playerVolumePath(), VeskValue::fromInt(80)));
    config->reconfigure(optionsWith({{"settings:player/volume", VeskValue::fromInt(10)}}));
    EXPECT_EQ(shown("settings:player/volume"), "10 (file)");
    config->reconfigure({});
    EXPECT_EQ(volume(), 80) << "as it was before";
}

TEST_F(HostConfigTest, AnotherLineIsNoChange)
{
    start(optionsWith({{"settings:player/volume", VeskValue::fromInt(40)}}));
    LogCapture log("Host");
    config->reconfigure(optionsWith({{"settings:player/volume", VeskValue::fromInt(40)}}, 9));
    EXPECT_EQ(entry("settings:player/volume").value(text("line")).toInt(), 9);
    EXPECT_THAT(log.lines().join(QLatin1Char('\n')).toStdString(),
        Not(HasSubstr("settings:player/volume")));
}

TEST_F(HostConfigTest, SaysWhatNeedsARestart)
{
    start({});
    LogCapture log("Host");
    HostOptions options = optionsWith({{"network:connected", VeskValue::fromBool(true)},
        {"settings:absent/a", VeskValue::fromBool(true)}});
    options.given[text("connections")] = {{100}, options.configFile, 1};
    config->reconfigure(options);
    for (const char *key : {"network:connected", "settings:absent/a", "connections"})
        EXPECT_THAT(log.lines().join(QLatin1Char('\n')).toStdString(),
            HasSubstr(std::string(key) + ": the change needs"));
    EXPECT_EQ(shown("connections"), "64 (default)") << "what holds";
    EXPECT_FALSE(values.value(VeskNetworkStateConnected()).bool_());
}

TEST_F(HostConfigTest, OnlyOwnersAreTold)
{
    start({});
    JsonRpcDispatcher rpc;
    config->addTo(&rpc);
    const auto answerTo = [&rpc](AccessRole role) {
        MessageSender sender;
        sender.caller.role = role;
        QByteArray answer;
        rpc.handle(R"({"jsonrpc":"2.0","id":1,"method":"host.config"})", sender,
            [&answer](const QByteArray &bytes) { answer = bytes; });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        return answer.toStdString();
    };
    EXPECT_THAT(answerTo(AccessRole::Owner), HasSubstr(R"("key":"connections")"));
    EXPECT_THAT(answerTo(AccessRole::Listener), HasSubstr("error"));
}

} // namespace
