// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/HostValues.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskValuePaths.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

/// The error with which the setting at \a path rejects \a sent; empty when it is accepted.
std::string refusal(const CMPath &path, const QVariant &sent)
{
    CMValuesWorker values;
    defineHostValues(&values);
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
    for (const HostValueDefinition &definition : hostValueDefinitions()) {
        EXPECT_TRUE(checkHostValue(definition, plainValue(definition.initial), definition.initial)
                        .isEmpty())
            << definition.path.toEncoded().toStdString();
    }
}

} // namespace
