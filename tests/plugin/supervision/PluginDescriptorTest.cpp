// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/PluginDescriptor.h"

#include "api/values/CMPath.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace {

std::string errorOf(const QByteArray &json)
{
    const auto descriptor = PluginDescriptor::fromJson(json);
    return descriptor ? std::string() : descriptor.error().toStdString();
}

constexpr char Whole[] = R"({"format": 1, "id": "radio", "changing": [
    {"base": "list", "words": ["Add", "drop"], "leftOut": ["list", "/at"]},
    {"base": "list", "parameter": "do", "values": ["vote", "tell"]},
    {"parameter": "send"}]})";

class ChangingAddressesTest : public testing::Test {
protected:
    bool isChanging(const QString &text)
    {
        const CMPath path = CMPath::fromEncoded(text);
        EXPECT_FALSE(path.isEmpty()) << text.toStdString();
        return changesSomething(PluginDescriptor::fromJson(Whole)->changing,
            CMPath::fromEncoded(QStringLiteral("Radio:")), path);
    }
};

} // namespace

TEST(PluginDescriptorTest, ReadsAllMembers)
{
    const PluginDescriptor descriptor = *PluginDescriptor::fromJson(Whole);
    EXPECT_EQ(descriptor.id, QStringLiteral("radio"));
    ASSERT_EQ(descriptor.changing.size(), 3);
    EXPECT_EQ(descriptor.changing.at(0).base, QStringLiteral("list"));
    EXPECT_EQ(descriptor.changing.at(0).words,
        QStringList({QStringLiteral("Add"), QStringLiteral("drop")}));
    EXPECT_EQ(descriptor.changing.at(0).leftOut,
        QStringList({QStringLiteral("list"), QStringLiteral("/at")}));
    EXPECT_EQ(descriptor.changing.at(1).parameter, QStringLiteral("do"));
    EXPECT_EQ(descriptor.changing.at(1).values,
        QStringList({QStringLiteral("vote"), QStringLiteral("tell")}));
    EXPECT_EQ(descriptor.changing.at(2).base, QString());
}

TEST(PluginDescriptorTest, ReadsTheDeviceSettingAndAnswers)
{
    const PluginDescriptor descriptor = *PluginDescriptor::fromJson(
        R"({"format": 1, "id": "radio", "deviceSetting": "settings:radio/key",
            "answers": {"status": ["head", "status"], "good": ["200", "ok"]},
            "excuses": [{"file": "/sorry/off.*mp3", "means": "noStream"},
                {"file": "/sorry/abroad.mp3", "means": "otherCountry"}]})");
    EXPECT_EQ(descriptor.deviceSetting.toEncoded(), QStringLiteral("settings:radio/key"));
    EXPECT_EQ(
        descriptor.answers.status, QStringList({QStringLiteral("head"), QStringLiteral("status")}));
    EXPECT_EQ(descriptor.answers.good, QStringList({QStringLiteral("200"), QStringLiteral("ok")}));
    ASSERT_EQ(descriptor.excuses.size(), 2);
    EXPECT_EQ(descriptor.excuses.at(0).file, QStringLiteral("/sorry/off.*mp3"));
    EXPECT_EQ(descriptor.excuses.at(0).meaning, ExcuseDeclaration::NoStream);
    EXPECT_EQ(descriptor.excuses.at(1).meaning, ExcuseDeclaration::OtherCountry);
    const PluginDescriptor without = *PluginDescriptor::fromJson(Whole);
    EXPECT_TRUE(without.deviceSetting.isEmpty());
    EXPECT_FALSE(without.answers.isKnown());
}

TEST(PluginDescriptorTest, ReadsWhatThePluginNeeds)
{
    const PluginNeeds all = PluginDescriptor::fromJson(
        R"({"format": 1, "id": "a", "needs": ["folder", "network", "store"]})")
                                ->needs;
    EXPECT_TRUE(all.network && all.store && all.folder);
    const PluginNeeds one
        = PluginDescriptor::fromJson(R"({"format": 1, "id": "a", "needs": ["store"]})")->needs;
    EXPECT_TRUE(one.store && !one.network && !one.folder);
    const PluginNeeds none = PluginDescriptor::fromJson(Whole)->needs;
    EXPECT_FALSE(none.network || none.store || none.folder);
}

TEST(PluginDescriptorTest, ReportsTheFirstError)
{
    const QByteArray longText(PluginDescriptor::MaxText + 1, 'a');
    const QByteArray manyTexts
        = QByteArray("\"a\",").repeated(PluginDescriptor::MaxEntries) + "\"a\"";
    const struct {
        QByteArray json;
        const char *error;
    } rows[] = {
        {"", "this is no JSON"},
        {"{", "this is no JSON"},
        {"[]", "an object is needed"},
        {"{}", "\"format\" is not 1"},
        {R"({"format": 2, "id": "a"})", "\"format\" is not 1"},
        {R"({"format": "1", "id": "a"})", "\"format\" is not 1"},
        {R"({"format": 1})", "\"id\" is no word"},
        {R"({"format": 1, "id": ""})", "\"id\" is no word"},
        {R"({"format": 1, "id": "a", "deviceSetting": 5})", "\"deviceSetting\" is no text"},
        {R"({"format": 1, "id": "a", "deviceSetting": "key"})", "\"deviceSetting\" is no path"},
        {R"({"format": 1, "id": "a", "answers": []})", "answers: an object is needed"},
        {R"({"format": 1, "id": "a", "answers": {}})",
            "answers: \"status\" or \"good\" is missing"},
        {R"({"format": 1, "id": "a", "answers": {"status": ["a"]}})",
            "answers: \"status\" or \"good\" is missing"},
        {R"({"format": 1, "id": "a", "answers": {"status": "a", "good": ["b"]}})",
            "answers: \"status\" is no list of at most 100"},
        {R"({"format": 1, "id": "a", "answers": {"state": ["a"]}})",
            "answers: there is no \"state\""},
        {R"({"format": 1, "id": "a", "needs": ["store", "disk"]})",
            "\"needs\" holds none of network, store, folder"},
        {R"({"format": 1, "id": "a", "needs": "store"})", "\"needs\" is no list of at most 100"},
        {R"({"format": 1, "id": "a", "needs": [true]})", "\"needs\" holds what is no text"},
        {R"({"format": 1, "id": "a", "excuses": [{"file": "a", "means": "noStream"}]})",
            "excuses: \"file\" does not begin with \"/\", or has two \"*\""},
        {R"({"format": 1, "id": "a", "excuses": [{"file": "/a*b*", "means": "noStream"}]})",
            "excuses: \"file\" does not begin with \"/\", or has two \"*\""},
        {R"({"format": 1, "id": "a", "excuses": [{"file": "/a", "means": "bored"}]})",
            "excuses: \"means\" is none of incompatible, noStream, otherCountry, forbidden"},
        {R"({"format": 1, "id": "a", "excuses": [{"file": "/a"}]})",
            "excuses: \"means\" is none of incompatible, noStream, otherCountry, forbidden"},
        {R"({"format": 1, "id": 5})", "\"id\" is no text"},
        {R"({"format": 1, "id": "../a"})", "\"id\" is no word"},
        {"{\"format\": 1, \"id\": \"" + longText + "\"}", "\"id\" is no text"},
        {R"({"format": 1, "id": "a", "run": "sh"})", "there is no \"run\""},
        {R"({"format": 1, "id": "a", "changing": {}})", "\"changing\" is no list of at most 100"},
        {R"({"format": 1, "id": "a", "changing": [5]})", "changing: an object is needed"},
        {R"({"format": 1, "id": "a", "changing": [{}]})",
            "changing: neither \"words\" nor \"parameter\""},
        {R"({"format": 1, "id": "a", "changing": [{"words": []}]})",
            "changing: neither \"words\" nor \"parameter\""},
        {R"({"format": 1, "id": "a", "changing": [{"words": ["a.b"]}]})",
            "changing: \"words\" holds what is no word"},
        {R"({"format": 1, "id": "a", "changing": [{"words": [""]}]})",
            "changing: \"words\" holds what is no word"},
        {R"({"format": 1, "id": "a", "changing": [{"words": "a"}]})",
            "changing: \"words\" is no list of at most 100"},
        {"{\"format\": 1, \"id\": \"a\", \"changing\": [{\"words\": [" + manyTexts + "]}]}",
            "changing: \"words\" is no list of at most 100"},
        {R"({"format": 1, "id": "a", "changing": [{"words": ["a"], "leftOut": [""]}]})",
            "changing: \"leftOut\" holds what is no text"},
        {R"({"format": 1, "id": "a", "changing": [{"words": ["a"], "values": ["b"]}]})",
            "changing: \"values\" without \"parameter\""},
        {R"({"format": 1, "id": "a", "changing": [{"words": ["a"], "base": null}]})",
            "changing: \"base\" is no text"},
        {R"({"format": 1, "id": "a", "changing": [{"word": ["a"]}]})",
            "changing: there is no \"word\""},
    };
    for (const auto &row : rows)
        EXPECT_EQ(errorOf(row.json), row.error) << row.json.constData();
}

TEST(PluginDescriptorTest, TheFileIsBesideTheLibrary)
{
    EXPECT_EQ(PluginDescriptor::fileOf(QStringLiteral("/lib/libvesk_cb_radio.so")),
        QStringLiteral("/lib/libvesk_cb_radio.json"));
    EXPECT_EQ(PluginDescriptor::fileOf(QStringLiteral("/lib/lib.radio.so")),
        QStringLiteral("/lib/lib.radio.json"));
}

TEST(PluginDescriptorTest, ReadsOnlyRegularFilesOfBoundedSize)
{
    const QTemporaryDir folder;
    const auto read = [&](const char *name) {
        const auto descriptor = PluginDescriptor::read(folder.filePath(QString::fromLatin1(name)));
        return descriptor ? std::string() : descriptor.error().toStdString();
    };
    const auto write = [&](const char *name, const QByteArray &bytes) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    EXPECT_EQ(read("missing"), "");
    write("fine", Whole);
    EXPECT_EQ(read("fine"), "");
    const QByteArray blanks(PluginDescriptor::MaxBytes - int(sizeof Whole) + 1, ' ');
    write("longest", Whole + blanks);
    EXPECT_EQ(read("longest"), "");
    write("longer", Whole + blanks + ' ');
    EXPECT_EQ(read("longer"), "this is longer than 65536 bytes");
    ASSERT_EQ(::mkfifo(folder.filePath(QStringLiteral("pipe")).toLatin1().constData(), 0600), 0);
    EXPECT_EQ(read("pipe"), "this is no regular file");
    EXPECT_EQ(read("."), "this is no regular file");
}

TEST_F(ChangingAddressesTest, HaveADeclaredWordOrParameter)
{
    for (const char *text :
        {"Radio:list/at/Add", "Radio:list/at/add.php", "Radio:list/at/ADD.php?x=1",
            "Radio:list/at/x/drop/y", "Radio:list/Add", "Radio:list/at/x-add", "Radio:list?do=vote",
            "Radio:list/at/Show?do=TELL", "Radio:?send=", "Radio:other?send=1"})
        EXPECT_TRUE(isChanging(QString::fromLatin1(text))) << text;
    for (const char *text :
        {"Radio:", "Radio:list", "Radio:list/at/Show.php", "Radio:list/at/Show.php?c=Add",
            "Radio:list/at/Adds", "Radio:list?do=read", "Radio:lists/at/Add", "Radio:other/Add",
            "Other:list/at/Add", "Other:?send=1", "radio:list/at/Add"})
        EXPECT_FALSE(isChanging(QString::fromLatin1(text))) << text;
}

TEST_F(ChangingAddressesTest, IncludeAddressesThatTheHostCannotRead)
{
    for (const char *text :
        {"Radio:list/at/A%64d", "Radio:list/at/A%2564d", "Radio:list/at/x/../Show",
            "Radio:list/at/./Show", "Radio:list//at/Show", "Radio:list/at//other.example/Show",
            "Radio:list/at/Show/", "Radio:list/at/", "Radio:list/at/x%5CAd%64",
            "Radio:list/at/Show;x", "Radio:list/at/Show%3Fc=Add", "Radio:list/at/Show%23",
            "Radio:list/at/Show%00", "Radio:list/at/Show%20", "Radio:list/at/Show.",
            "Radio:list/at/.Show", "Radio:list/at/http:", "Radio:list/at/%EF%BC%A1dd",
            "Radio:list/at/%E2%84%AA", "Radio:list/at/a%2Bb", "Radio:list/at/%25u0041dd"})
        EXPECT_TRUE(isChanging(QString::fromLatin1(text))) << text;
}

TEST_F(ChangingAddressesTest, AreFoundBehindRemovedTexts)
{
    for (const char *text : {"Radio:list/at/Alistdd", "Radio:list/at/A/atdd",
             "Radio:list/at/A/at/at/atdd", "Radio:list/at/Allististdd", "Radio:list/at/A/alisttdd",
             "Radio:list/at/Show/at/Add", "Radio:list/at/A/listatdd"})
        EXPECT_TRUE(isChanging(QString::fromLatin1(text))) << text;
    const QString nested
        = QStringLiteral("li").repeated(1000) + QStringLiteral("st").repeated(1000);
    EXPECT_TRUE(isChanging(QStringLiteral("Radio:list/at/") + nested))
        << "deeper than anybody looks";
    EXPECT_FALSE(isChanging(QStringLiteral("Radio:list/at/Shlistow.php")));
}

TEST_F(ChangingAddressesTest, AreBelowThePluginsRoot)
{
    const auto changing = PluginDescriptor::fromJson(Whole)->changing;
    const CMPath root = CMPath::fromEncoded(QStringLiteral("Many:radio"));
    EXPECT_TRUE(changesSomething(
        changing, root, CMPath::fromEncoded(QStringLiteral("Many:radio/list/Add"))));
    EXPECT_FALSE(
        changesSomething(changing, root, CMPath::fromEncoded(QStringLiteral("Many:list/Add"))));
    EXPECT_TRUE(
        changesSomething(changing, root, CMPath::fromEncoded(QStringLiteral("Many:radio?send=1"))));
}
