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

/// The members that each descriptor has, but for the closing brace.
#define NEEDED R"({"format": 1, "id": "radio", "name": "Radio 1", "version": "2.0", "api": "0.1")"

constexpr char Whole[] = NEEDED R"(, "changing": [
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
    const PluginDescriptor descriptor
        = *PluginDescriptor::fromJson(NEEDED R"(, "deviceSetting": "settings:radio/key",
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
    const PluginNeeds all
        = PluginDescriptor::fromJson(NEEDED R"(, "needs": ["folder", "network", "store"]})")->needs;
    EXPECT_TRUE(all.network && all.store && all.folder);
    const PluginNeeds one = PluginDescriptor::fromJson(NEEDED R"(, "needs": ["store"]})")->needs;
    EXPECT_TRUE(one.store && !one.network && !one.folder);
    const PluginNeeds none = PluginDescriptor::fromJson(Whole)->needs;
    EXPECT_FALSE(none.network || none.store || none.folder);
}

TEST(PluginDescriptorTest, ReadsWhatEachPluginSaysOfItself)
{
    const PluginDescriptor least = *PluginDescriptor::fromJson(NEEDED "}");
    EXPECT_EQ(least.name, QStringLiteral("Radio 1"));
    EXPECT_EQ(least.version, QStringLiteral("2.0"));
    EXPECT_EQ(least.api, QStringLiteral("0.1"));
    EXPECT_EQ(least.context, QStringLiteral("radio")) << "its id, unless it says otherwise";
    EXPECT_TRUE(least.translations.isEmpty());
    EXPECT_TRUE(least.settings.isEmpty());
    EXPECT_TRUE(least.screens.search.isEmpty() && least.screens.favorites.isEmpty()
        && least.screens.account.isEmpty() && least.screens.importValue.isEmpty()
        && least.screens.exportValue.isEmpty());

    const PluginDescriptor most = *PluginDescriptor::fromJson(
        NEEDED R"(, "context": "Words", "translations": "share/words"})");
    EXPECT_EQ(most.context, QStringLiteral("Words"));
    EXPECT_EQ(most.translations, QStringLiteral("share/words"));
}

TEST(PluginDescriptorTest, ReadsTheScreens)
{
    const ServiceScreens screens = PluginDescriptor::fromJson(NEEDED R"(, "screens": {
        "search": "searches", "import": "list/import", "export": "list/export",
        "favorites": {"screen": "list?c=kept", "toggle": ["menu/keep", "other/keep"], "ids": ["id"]},
        "account": {"value": "account", "type": "tuneInAccount"}}})")
                                       ->screens;
    EXPECT_EQ(screens.search, QStringLiteral("searches"));
    EXPECT_EQ(screens.importValue, QStringLiteral("list/import"));
    EXPECT_EQ(screens.exportValue, QStringLiteral("list/export"));
    EXPECT_EQ(screens.favorites, QStringLiteral("list?c=kept"));
    EXPECT_EQ(screens.favoriteToggles,
        QStringList({QStringLiteral("menu/keep"), QStringLiteral("other/keep")}));
    EXPECT_EQ(screens.favoriteIds, QStringList({QStringLiteral("id")}));
    EXPECT_EQ(screens.account, QStringLiteral("account"));
    EXPECT_EQ(screens.accountType, VeskValueType::tuneInAccount);

    const ServiceScreens one = PluginDescriptor::fromJson(NEEDED R"(, "screens": {
        "favorites": {"screen": "kept", "toggle": "menu/keep", "ids": ["id"]}}})")
                                   ->screens;
    EXPECT_EQ(one.favoriteToggles, QStringList({QStringLiteral("menu/keep")}));
    const ServiceScreens none
        = PluginDescriptor::fromJson(NEEDED R"(, "screens": {"favorites": {"screen": "kept"}}})")
              ->screens;
    EXPECT_EQ(none.favorites, QStringLiteral("kept")) << "without entries of menus";
}

TEST(PluginDescriptorTest, ReadsSettings)
{
    const auto settings = PluginDescriptor::fromJson(NEEDED R"(, "settings": [
        {"path": "settings:radio/key", "type": "string", "default": "", "title": "Key",
            "help": "Of you.", "restart": true},
        {"path": "settings:radio/at/home", "type": "string", "form": "address",
            "default": "http://a.example/", "title": "Home", "shown": "browsing"},
        {"path": "settings:radio/formats", "type": "string", "form": "formats",
            "choices": ["mp3", "ogg"], "default": {"from": "playerFormats"}, "title": "Formats"},
        {"path": "settings:radio/size", "type": "string", "choices": ["big", "small"],
            "default": "small", "title": "Size", "shown": "never"},
        {"path": "settings:radio/count", "type": "int", "default": 5, "min": 1, "max": 9,
            "title": "Count", "shown": "advanced"},
        {"path": "settings:radio/gain", "type": "double", "default": 1, "min": 0.5,
            "title": "Gain"},
        {"path": "settings:radio/on", "type": "bool", "default": true, "title": "On"}]})")
                              ->settings;
    ASSERT_EQ(settings.size(), 7);
    EXPECT_EQ(settings.at(0).path.toEncoded(), QStringLiteral("settings:radio/key"));
    EXPECT_EQ(settings.at(0).initial, VeskValue::fromString(QString()));
    EXPECT_EQ(settings.at(0).title, QStringLiteral("Key"));
    EXPECT_EQ(settings.at(0).help, QStringLiteral("Of you."));
    EXPECT_TRUE(settings.at(0).restarts);
    EXPECT_EQ(settings.at(0).shown, SettingDeclaration::Advanced);
    EXPECT_EQ(settings.at(1).shown, SettingDeclaration::Browsing);
    EXPECT_EQ(settings.at(1).form, SettingDeclaration::Address);
    EXPECT_FALSE(settings.at(1).restarts);
    EXPECT_TRUE(settings.at(2).isInitiallyPlayerFormats);
    EXPECT_EQ(settings.at(2).form, SettingDeclaration::Formats);
    EXPECT_EQ(settings.at(3).shown, SettingDeclaration::Never);
    EXPECT_EQ(settings.at(4).initial, VeskValue::fromInt(5));
    EXPECT_EQ(settings.at(5).initial.double_(), 1.0);
    EXPECT_EQ(settings.at(6).initial, VeskValue::fromBool(true));

    const auto takes = [&settings](int index, const VeskValue &value) {
        return settings.at(index).takes(value);
    };
    const auto text
        = [](const char *latin1) { return VeskValue::fromString(QString::fromLatin1(latin1)); };
    for (const char *each : {"", "http://a.example/", "HTTPS://a.example/x?y=z"})
        EXPECT_TRUE(takes(1, text(each))) << each;
    for (const char *each : {"a.example", "ftp://a.example/", "http://", "/x"})
        EXPECT_FALSE(takes(1, text(each))) << each;
    for (const char *each : {"", "mp3", "ogg,mp3"})
        EXPECT_TRUE(takes(2, text(each))) << each;
    for (const char *each : {"mp5", "mp3,", ",", "mp3, ogg", "MP3"})
        EXPECT_FALSE(takes(2, text(each))) << each;
    EXPECT_TRUE(takes(3, text("big")));
    EXPECT_FALSE(takes(3, text("")));
    for (const int count : {1, 9})
        EXPECT_TRUE(takes(4, VeskValue::fromInt(count))) << count;
    for (const int count : {0, 10})
        EXPECT_FALSE(takes(4, VeskValue::fromInt(count))) << count;
    VeskValue gain;
    gain.setDouble(1e9);
    EXPECT_TRUE(takes(5, gain)) << "no upper bound";
    gain.setDouble(0.4);
    EXPECT_FALSE(takes(5, gain));
}

TEST(PluginDescriptorTest, ReportsWhatIsWrongWithASetting)
{
    const struct {
        const char *setting;
        const char *error;
    } rows[] = {
        {R"(5)", "settings: an object is needed"},
        {R"({})", "settings: \"path\" is missing"},
        {R"({"path": "settings:other/key"})",
            "settings: \"settings:other/key\" is not settings:radio/NAME"},
        {R"({"path": "settings:radio"})",
            "settings: \"settings:radio\" is not settings:radio/NAME"},
        {R"({"path": "settings:radio/"})",
            "settings: \"settings:radio/\" is not settings:radio/NAME"},
        {R"({"path": "settings:radio/../ui/language"})",
            "settings: \"settings:radio/../ui/language\" is not settings:radio/NAME"},
        {R"({"path": "settings:radio/a?b=c"})",
            "settings: \"settings:radio/a?b=c\" is not settings:radio/NAME"},
        {R"({"path": "system:radio/a"})",
            "settings: \"system:radio/a\" is not settings:radio/NAME"},
        {R"({"path": "radio"})", "settings: \"radio\" is not settings:radio/NAME"},
        {R"({"path": "settings:radio/a"})", "settings:radio/a: \"type\" is missing"},
        {R"({"path": "settings:radio/a", "type": "text"})",
            "settings:radio/a: \"type\" is none of string, bool, int, double"},
        {R"({"path": "settings:radio/a", "type": "int"})",
            "settings:radio/a: \"title\" is missing"},
        {R"({"path": "settings:radio/a", "type": "int", "title": "A"})",
            "settings:radio/a: \"default\" is missing or of another type"},
        {R"({"path": "settings:radio/a", "type": "int", "title": "A", "default": "5"})",
            "settings:radio/a: \"default\" is missing or of another type"},
        {R"({"path": "settings:radio/a", "type": "int", "title": "A", "default": 1.5})",
            "settings:radio/a: \"default\" is missing or of another type"},
        {R"({"path": "settings:radio/a", "type": "int", "title": "A", "default": 2147483648})",
            "settings:radio/a: \"default\" is missing or of another type"},
        {R"({"path": "settings:radio/a", "type": "int", "title": "A", "default": 5, "max": 4})",
            "settings:radio/a: \"default\" is what the setting does not take"},
        {R"({"path": "settings:radio/a", "type": "int", "title": "A", "default": 5, "max": "9"})",
            "settings:radio/a: \"max\" is no number of the setting's type"},
        {R"({"path": "settings:radio/a", "type": "int", "title": "A", "default": 5, "max": 1,
              "min": 9})",
            "settings:radio/a: \"min\" is more than \"max\""},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "", "min": 1})",
            "settings:radio/a: \"min\" is no number of the setting's type"},
        {R"({"path": "settings:radio/a", "type": "bool", "title": "A", "default": true,
              "choices": ["a"]})",
            "settings:radio/a: \"form\" and \"choices\" are for texts"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "",
              "form": "formats"})",
            "settings:radio/a: \"choices\" are for formats, which need them, not for addresses"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "",
              "form": "address", "choices": ["a"]})",
            "settings:radio/a: \"choices\" are for formats, which need them, not for addresses"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "",
              "form": "number"})",
            "settings:radio/a: \"form\" is none of address, formats"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "b",
              "choices": ["a"]})",
            "settings:radio/a: \"default\" is what the setting does not take"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A",
              "default": {"from": "playerFormats"}})",
            "settings:radio/a: \"default\" cannot come from there"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "form": "formats",
              "choices": ["a"], "default": {"from": "elsewhere"}})",
            "settings:radio/a: \"default\" cannot come from there"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A\nB", "default": ""})",
            "settings:radio/a: \"title\" is no text"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "",
              "shown": "often"})",
            "settings:radio/a: \"shown\" is none of never, browsing, advanced"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "",
              "restart": 1})",
            "settings:radio/a: \"restart\" is neither true nor false"},
        {R"({"path": "settings:radio/a", "type": "string", "title": "A", "default": "",
              "unit": "s"})",
            "settings:radio/a: there is no \"unit\""},
        {R"({"path": "settings:radio/a", "type": "bool", "title": "A", "default": true},
            {"path": "settings:radio/a", "type": "bool", "title": "A", "default": true})",
            "\"settings\" has settings:radio/a twice"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(errorOf(QByteArray(NEEDED R"(, "settings": [)") + row.setting + "]}"), row.error)
            << row.setting;
    }
}

TEST(PluginDescriptorTest, ReportsOtherVersionsBeforeAnythingElse)
{
    EXPECT_EQ(
        errorOf(R"({"format": 1, "id": "a", "name": "A", "version": "1", "api": "0.1"})"), "");
    for (const char *api : {"0.0", "0.2", "1.0", "1.1", "9999.9999"}) {
        EXPECT_EQ(errorOf(R"({"format": 1, "ids": {}, "api": ")" + QByteArray(api) + "\"}"),
            std::string("it was built with version ") + api + " of the SDK, and this host has 0.1")
            << api;
    }
    for (const char *api : {"0", "0.", ".1", "0.1.0", "-0.1", "0.-1", "0.1 ", "0x0.1", "99999.1"}) {
        EXPECT_EQ(errorOf(R"({"format": 1, "ids": {}, "api": ")" + QByteArray(api) + "\"}"),
            "\"api\" is no MAJOR.MINOR")
            << api;
    }
}

TEST(PluginDescriptorTest, PathsAreBelowTheRoot)
{
    const struct {
        const char *root;
        const char *path;
        const char *whole;
    } rows[] = {
        {"Radio:", "searches", "Radio:searches"},
        {"Radio:", "list?c=kept", "Radio:list?c=kept"},
        {"Many:radio", "searches", "Many:radio/searches"},
        {"Many:radio?x=1", "list?c=kept", "Many:radio/list?c=kept"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(pathBelow(CMPath::fromEncoded(QString::fromLatin1(row.root)),
                      QString::fromLatin1(row.path))
                      .toEncoded(),
            QString::fromLatin1(row.whole));
    }
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
        {R"({"format": 1, "id": "a"})", "\"name\" is missing"},
        {R"({"format": 1, "id": "a", "name": ""})", "\"name\" is missing"},
        {R"({"format": 1, "id": "a", "name": ["A"]})", "\"name\" is no text"},
        {R"({"format": 1, "id": "a", "name": "A\u0007"})", "\"name\" is no text"},
        {R"({"format": 1, "id": "a", "name": "A"})", "\"version\" is missing"},
        {R"({"format": 1, "id": "a", "name": "A", "version": "1"})", "\"api\" is missing"},
        {R"({"format": 1, "id": "a", "api": 0.1})", "\"api\" is no text"},
        {NEEDED R"(, "context": ""})", "\"context\" is missing"},
        {NEEDED R"(, "translations": "../words"})",
            "\"translations\" is no folder beside the file"},
        {NEEDED R"(, "translations": "/words"})", "\"translations\" is no folder beside the file"},
        {NEEDED R"(, "translations": ""})", "\"translations\" is no folder beside the file"},
        {NEEDED R"(, "settings": {}})", "\"settings\" is no list of at most 100"},
        {NEEDED R"(, "screens": []})", "screens: an object is needed"},
        {NEEDED R"(, "screens": {"home": "a"}})", "screens: there is no \"home\""},
        {NEEDED R"(, "screens": {"search": ""}})",
            "screens: \"search\" is no path below the plug-in's root"},
        {NEEDED R"(, "screens": {"search": "a?b"}})",
            "screens: \"search\" is no path below the plug-in's root"},
        {NEEDED R"(, "screens": {"import": 5}})", "screens: \"import\" is no text"},
        {NEEDED R"(, "screens": {"favorites": "a"}})", "favorites: an object is needed"},
        {NEEDED R"(, "screens": {"favorites": {}}})", "favorites: \"screen\" is missing"},
        {NEEDED R"(, "screens": {"favorites": {"screen": "a", "toggle": "b"}}})",
            "favorites: \"toggle\" and \"ids\" belong together"},
        {NEEDED R"(, "screens": {"favorites": {"screen": "a", "ids": ["b"]}}})",
            "favorites: \"toggle\" and \"ids\" belong together"},
        {NEEDED R"(, "screens": {"favorites": {"screen": "a", "toggle": "b?c=d", "ids": ["e"]}}})",
            "favorites: \"toggle\" holds what is no path without parameters"},
        {NEEDED R"(, "screens": {"account": {"value": "a"}}})", "account: \"type\" is missing"},
        {NEEDED R"(, "screens": {"account": {"type": "account"}}})",
            "account: \"value\" is missing"},
        {NEEDED R"(, "screens": {"account": {"value": "a", "type": "bank"}}})",
            "account: \"type\" is no type of accounts"},
        {NEEDED R"(, "screens": {"account": {"value": "a", "type": "string_"}}})",
            "account: \"type\" is no type of accounts"},
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
    EXPECT_EQ(read("missing"), "No such file or directory");
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
