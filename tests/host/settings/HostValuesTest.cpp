// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/HostValues.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskValuePaths.h"
#include "host/player/StreamFormats.h"
#include "plugin/supervision/PluginDescriptor.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

/// Of a host with the plug-in.
const HostValues &known()
{
    static const HostValues values = [] {
        HostValues with;
        const auto descriptor = PluginDescriptor::read(QStringLiteral(TUNEIN_DESCRIPTOR));
        EXPECT_TRUE(descriptor) << descriptor.error().toStdString();
        EXPECT_TRUE(with.add(*descriptor));
        return with;
    }();
    return values;
}

/// What a descriptor with these settings of "radio" says.
PluginDescriptor radio(const QByteArray &settings)
{
    const auto descriptor = PluginDescriptor::fromJson(
        R"({"format": 1, "id": "radio", "name": "Radio", "version": "1", "api": "0.1",
            "context": "Radio", "settings": [)"
        + settings + "]}");
    EXPECT_TRUE(descriptor) << descriptor.error().toStdString();
    return *descriptor;
}

QStringList texts(const QList<CMPath> &paths)
{
    QStringList texts;
    for (const CMPath &path : paths)
        texts.append(path.toEncoded());
    return texts;
}

/// The error with which the setting at \a path rejects \a sent; empty when it is accepted.
std::string refusal(
    const CMPath &path, const QVariant &sent, const HostValues &definitions = known())
{
    CMValuesWorker values;
    definitions.defineIn(&values);
    const QVariant before = values.value(path).toHash();
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    values.request(CMSetDataRequest(path, VeskRoles::Value(), sent, CMReply<QVariant>(data)));
    const std::string error = data->error().message().toString().toStdString();
    if (!error.empty()) {
        EXPECT_EQ(QVariant(values.value(path).toHash()), before);
    }
    return error;
}

std::string refusal(const CMPath &path, const char *sent)
{
    return refusal(path, QVariant(QString::fromUtf8(sent)));
}

TEST(HostValues, TheLanguageIsALanguageTag)
{
    for (const char *good : {"en", "de-DE", "en_GB", "pl-PL", "zh-Hant-TW", "DE-de"})
        EXPECT_EQ(refusal(VeskUILanguagePath(), good), "") << good;
    for (const char *bad : {"", "xx", "xx-DE", "german", "klingon", "__proto__", "de-", "d", "c",
             "../de", "de-DE\n", "de DE"})
        EXPECT_THAT(refusal(VeskUILanguagePath(), bad), HasSubstr("a language tag")) << bad;
    EXPECT_EQ(refusal(VeskUILanguagePath(), "xx"),
        "The setting \"Language\" cannot be \"xx\": it is a language tag, such as \"de-DE\" or "
        "\"en\".");
}

TEST(HostValues, FormatsAreKnownNames)
{
    const CMPath path = VeskTuneInSupportedStreamsPath();
    for (const char *good : {"", "mp3", "mp3,aac,ogg,opus,flac,hls", "wma", "*"})
        EXPECT_EQ(refusal(path, good), "") << good;
    for (const char *bad : {"mp5", "mp3,mp5", "mp3, aac", "mp3,", ",", "MP3", "mp3&id=1"}) {
        EXPECT_THAT(refusal(path, bad),
            testing::AllOf(HasSubstr("\"Stream formats to ask TuneIn for\""), HasSubstr("aac"),
                HasSubstr("or empty")))
            << bad;
    }
}

TEST(HostValues, AddressesAreHttpOrHttps)
{
    const CMPath path = VeskTuneInBrowseIndexUrlPath();
    for (const char *good : {"", "http://a.example/", "HTTPS://a.example/x?y=z"})
        EXPECT_EQ(refusal(path, good), "") << good;
    for (const char *bad : {"a.example", "ftp://a.example/", "http://", "file:///etc/passwd", "/x"})
        EXPECT_THAT(refusal(path, bad), HasSubstr("http:// or https://")) << bad;
}

TEST(HostValues, TextsHaveOneLineAndABoundedLength)
{
    const CMPath path = VeskTuneInPartnerIdPath();
    EXPECT_EQ(refusal(path, "abc!§$"), "");
    EXPECT_EQ(refusal(path, ""), "");
    EXPECT_EQ(refusal(path, QString(MaxHostText, QLatin1Char('x'))), "");
    const std::string tooLong = refusal(path, QString(MaxHostText + 1, QLatin1Char('x')));
    EXPECT_THAT(tooLong, HasSubstr("\"TuneIn partner id\""));
    EXPECT_THAT(tooLong, HasSubstr("at most 2000 characters"));
    EXPECT_LT(tooLong.size(), 200U);
    EXPECT_THAT(refusal(path, "a\nb"), HasSubstr("one line"));
    EXPECT_THAT(refusal(path, QVariantList {1}), HasSubstr("a text"));
    EXPECT_THAT(refusal(path, QVariant()), HasSubstr("a text"));
}

TEST(HostValues, SwitchesAreTrueOrFalse)
{
    const CMPath path = VeskChildElementsInSingleListPath();
    EXPECT_EQ(refusal(path, false), "");
    EXPECT_EQ(refusal(path, "false"), "");
    for (const QVariant &bad : {QVariant(QStringLiteral("yes")), QVariant(2), QVariant(),
             QVariant(QVariantHash {{QStringLiteral("a"), 1}})})
        EXPECT_THAT(refusal(path, bad),
            testing::AllOf(HasSubstr("\"Show the parts of a screen in one list\""),
                HasSubstr("it is true or false.")));
}

TEST(HostValues, ChecksAValueThatIsSentWithItsType)
{
    const QVariant sent = VeskValue::fromString(QStringLiteral("xx")).toHash();
    EXPECT_THAT(refusal(VeskUILanguagePath(), sent), HasSubstr("cannot be \"xx\""));
    EXPECT_EQ(refusal(VeskUILanguagePath(),
                  QVariant(VeskValue::fromString(QStringLiteral("de")).toHash())),
        "");
}

TEST(HostValues, DefaultsPassTheirOwnChecks)
{
    for (const HostValueDefinition &definition : known().definitions()) {
        EXPECT_TRUE(checkHostValue(definition, plainValue(definition.initial), definition.initial)
                        .isEmpty())
            << definition.path.toEncoded().toStdString();
    }
}

TEST(HostValues, OfAPluginStandAmongTheHosts)
{
    EXPECT_EQ(texts(known().in(HostValueGroup::General)),
        QStringList({QStringLiteral("settings:ui/language"),
            QStringLiteral("settings:player/seamless"), QStringLiteral("settings:player/evenness"),
            QStringLiteral("settings:player/pauseBuffer"), QStringLiteral("settings:player/resume"),
            QStringLiteral("settings:player/output")}));
    EXPECT_EQ(texts(known().in(HostValueGroup::Browsing)),
        QStringList({QStringLiteral("settings:browser/childElementsInSingleList"),
            QStringLiteral("settings:tunein/enabledFixItWizard")}));
    EXPECT_EQ(texts(known().in(HostValueGroup::Advanced)),
        QStringList({QStringLiteral("settings:tunein/partnerId"),
            QStringLiteral("settings:tunein/browseIndexUrl"),
            QStringLiteral("settings:tunein/supportedStreams"),
            QStringLiteral("settings:network/localAddresses")}));
    const HostValueDefinition *const streams = known().find(VeskTuneInSupportedStreamsPath());
    ASSERT_TRUE(streams);
    EXPECT_EQ(streams->initial, VeskValue::fromString(decodableFormats()));
    EXPECT_EQ(streams->access, CMValuesWorker::Writable);
    EXPECT_EQ(streams->title.toString(), QStringLiteral("Stream formats to ask TuneIn for"));
    EXPECT_EQ(streams->description.toString(),
        QStringLiteral("Separated by commas. Stations are offered in these formats only."));
    EXPECT_FALSE(HostValues().find(VeskTuneInSupportedStreamsPath())) << "without the plug-in";
}

TEST(HostValues, OfSeveralPluginsKeepTheirOrder)
{
    HostValues values;
    ASSERT_TRUE(values.add(radio(R"(
        {"path": "settings:radio/b", "type": "int", "default": 1, "title": "B"},
        {"path": "settings:radio/a", "type": "int", "default": 1, "title": "A"},
        {"path": "settings:radio/hidden", "type": "int", "default": 1, "title": "H",
            "shown": "never"})")));
    ASSERT_TRUE(values.add(
        radio(R"({"path": "settings:radio/0", "type": "int", "default": 1, "title": "0"})")));
    EXPECT_EQ(texts(values.in(HostValueGroup::Advanced)),
        QStringList({QStringLiteral("settings:radio/b"), QStringLiteral("settings:radio/a"),
            QStringLiteral("settings:radio/0"),
            QStringLiteral("settings:network/localAddresses")}));
    EXPECT_TRUE(values.find(CMPath::fromEncoded(QStringLiteral("settings:radio/hidden"))));
}

TEST(HostValues, ASettingExistsOnce)
{
    const PluginDescriptor descriptor = radio(R"(
        {"path": "settings:radio/new", "type": "int", "default": 1, "title": "New"},
        {"path": "settings:radio/a", "type": "int", "default": 1, "title": "A"})");
    HostValues values;
    ASSERT_TRUE(values.add(
        radio(R"({"path": "settings:radio/a", "type": "bool", "default": true, "title": "A"})")));
    const auto added = values.add(descriptor);
    ASSERT_FALSE(added);
    EXPECT_EQ(added.error(), QStringLiteral("there is a setting settings:radio/a already"));
    EXPECT_FALSE(values.find(CMPath::fromEncoded(QStringLiteral("settings:radio/new"))))
        << "none of them";
}

TEST(HostValues, SayWhatDeclaredSettingsTake)
{
    HostValues values;
    ASSERT_TRUE(values.add(radio(R"(
        {"path": "settings:radio/size", "type": "string", "choices": ["big", "small"],
            "default": "big", "title": "Size"},
        {"path": "settings:radio/both", "type": "int", "min": 1, "max": 9, "default": 5,
            "title": "N"},
        {"path": "settings:radio/least", "type": "double", "min": 0.5, "default": 5, "title": "N"},
        {"path": "settings:radio/most", "type": "int", "max": 9, "default": 5, "title": "N"},
        {"path": "settings:radio/any", "type": "double", "default": 5, "title": "N"})")));
    const struct {
        const char *path;
        QVariant good;
        QVariant bad;
        const char *error;
    } rows[] = {
        {"size", QStringLiteral("small"), QStringLiteral("tiny"),
            "The setting \"Size\" cannot be \"tiny\": it is one of: big, small."},
        {"both", 9, 10, "The setting \"N\" cannot be \"10\": it is a number from 1 to 9."},
        {"both", 1, QStringLiteral("x"),
            "The setting \"N\" cannot be \"x\": it is a number from 1 to 9."},
        {"least", 0.5, 0.25, "The setting \"N\" cannot be \"0.25\": it is a number from 0.5."},
        {"most", -5, 10, "The setting \"N\" cannot be \"10\": it is a number up to 9."},
        {"any", 1e9, QStringLiteral("x"), "The setting \"N\" cannot be \"x\": it is a number."},
    };
    for (const auto &row : rows) {
        const CMPath path(
            QStringLiteral("settings"), QStringLiteral("radio/") + QLatin1String(row.path));
        EXPECT_EQ(refusal(path, row.good, values), "") << row.path;
        EXPECT_EQ(refusal(path, row.bad, values), row.error) << row.path;
    }
}

} // namespace
