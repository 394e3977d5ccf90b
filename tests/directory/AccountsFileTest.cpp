// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"
#include "tests/support/SmallDisk.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <sys/stat.h>

using namespace directory;
using namespace directory::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace fs = std::filesystem;

namespace {

struct stat statusOfFile(const std::string &file)
{
    struct stat status { };
    EXPECT_EQ(::stat(file.c_str(), &status), 0) << file;
    return status;
}

/// A directory with an accounts file, which can be restarted.
class AccountsFileTest : public testing::Test {
protected:
    AccountsFileTest()
    {
        std::string folder = testing::TempDir() + "accounts-XXXXXX";
        m_folder = ::mkdtemp(folder.data());
        m_file = m_folder + "/accounts.json";
    }
    ~AccountsFileTest() override
    {
        m_directory.reset();
        fs::remove_all(m_folder);
    }

    void start() { EXPECT_EQ(refusal(), ""); }
    /// Starts; returns the reason for rejecting the file, or an empty text.
    std::string refusal()
    {
        m_directory.reset();
        auto accounts = AccountsFile::open(
            m_file, [this](const std::string &line) { m_complaints.push_back(line); });
        if (!accounts)
            return accounts.error().text;
        auto members = (*accounts)->read();
        if (!members)
            return members.error();
        m_directory = std::make_unique<Directory>(
            shippedCatalog(), [] { return MondayMorning; }, *std::move(accounts),
            *std::move(members));
        return {};
    }
    Json ask(const std::string &target)
    {
        return Json::parse(m_directory->handle(requestFor(target, "POST")).body);
    }
    void succeed(const std::string &target) { EXPECT_EQ(statusOf(ask(target)), "200") << target; }
    void create(const std::string &name, const std::string &rest = {})
    {
        succeed("/Account.ashx?c=create&username=" + name + "&password=sesame&email=" + name
            + "@example.org&postalCode=20095" + rest);
    }
    std::vector<std::string> presets(const std::string &whose)
    {
        return valuesOf(ask("/Browse.ashx?c=presets&" + whose)["body"], "guide_id");
    }
    std::vector<std::string> folders(const std::string &whose)
    {
        return valuesOf(ask("/Preset.ashx?c=listFolders&" + whose)["body"], "text");
    }
    std::string owner(const std::string &serial)
    {
        const Json rows = ask("/Account.ashx?c=query&serial=" + serial)["body"];
        return rows.empty() ? std::string() : rows[0].value("text", "");
    }

    std::string text() const
    {
        std::ostringstream out;
        out << std::ifstream(m_file, std::ios::binary).rdbuf();
        return out.str();
    }
    void put(const std::string &text) const { std::ofstream(m_file, std::ios::binary) << text; }

    std::string m_folder;
    std::string m_file;
    std::vector<std::string> m_complaints;
    std::unique_ptr<Directory> m_directory;
};

TEST_F(AccountsFileTest, AccountsAndJoinedDevicesSurviveARestart)
{
    start();
    create("me", "&serial=S");
    create("you");
    succeed("/Account.ashx?c=join&username=you&password=sesame&serial=T");
    succeed("/Account.ashx?c=drop&username=you&password=sesame&serial=T");
    const Json before = ask("/Account.ashx?c=auth&username=me&password=sesame")["body"][0];
    start();
    EXPECT_EQ(owner("S"), "me");
    EXPECT_EQ(owner("T"), "");
    const Json after = ask("/Account.ashx?c=auth&username=ME&password=sesame")["body"][0];
    EXPECT_EQ(after["account_id"], before["account_id"]);
    EXPECT_EQ(after["email"], "me@example.org");
    EXPECT_EQ(statusOf(ask("/Account.ashx?c=auth&username=me&password=Sesame")), "401");
    EXPECT_EQ(faultCodeOf(ask("/Account.ashx?c=create&username=Me&password=sesame&postalCode=1"
                              "&email=else@example.org")),
        "validation.userNameExists");
    create("third");
    EXPECT_NE(ask("/Account.ashx?c=auth&username=third&password=sesame")["body"][0]["account_id"],
        ask("/Account.ashx?c=auth&username=you&password=sesame")["body"][0]["account_id"]);
}

TEST_F(AccountsFileTest, FavoritesOfAnAccountSurviveARestart)
{
    const std::string whose = "username=me&password=sesame";
    start();
    create("me", "&serial=S");
    succeed("/Preset.ashx?c=add&id=s29001&" + whose);
    succeed("/Preset.ashx?c=add&id=s29002&presetNumber=7&serial=S");
    succeed("/Preset.ashx?c=add&id=s29003&" + whose);
    succeed("/Preset.ashx?c=remove&id=s29003&" + whose);
    start();
    EXPECT_THAT(presets(whose), ElementsAre("s29001", "s29002"));
    EXPECT_THAT(presets("serial=S"), ElementsAre("s29001", "s29002"));
    EXPECT_EQ(valuesOf(ask("/Browse.ashx?c=presets&serial=S")["body"], "preset_number"),
        (std::vector<std::string> {"1", "7"}));
}

TEST_F(AccountsFileTest, FavoritesAndFoldersOfADeviceSurviveARestart)
{
    start();
    succeed("/Preset.ashx?c=addFolder&name=Fr%C3%BCh&serial=D");
    succeed("/Preset.ashx?c=addFolder&name=gone&serial=D");
    succeed("/Preset.ashx?c=removeFolder&folderId=f3&serial=D");
    succeed("/Preset.ashx?c=renameFolder&folderId=f1&name=Home&serial=D");
    succeed("/Preset.ashx?c=add&id=s29001&folderId=f2&serial=D");
    succeed("/Preset.ashx?c=add&url=http://radio.example/a&name=Mine&serial=D");
    start();
    EXPECT_THAT(folders("serial=D"), ElementsAre("Home", "Fr\xC3\xBCh"));
    EXPECT_THAT(presets("id=f2&serial=D"), ElementsAre("s29001"));
    const Json mine = ask("/Browse.ashx?c=presets&id=f1&serial=D")["body"];
    ASSERT_EQ(mine.size(), 1u);
    EXPECT_EQ(mine[0].value("text", ""), "Mine");
    EXPECT_EQ(mine[0].value("URL", ""), "http://radio.example/a");
    // Ids are not reused.
    EXPECT_EQ(ask("/Preset.ashx?c=addFolder&name=new&serial=D")["body"][0]["guide_id"], "f4");
    succeed("/Preset.ashx?c=add&url=http://radio.example/b&serial=D");
    EXPECT_THAT(presets("id=f1&serial=D"), ElementsAre("u1", "u2"));
}

TEST_F(AccountsFileTest, ADevicesOwnFavoritesComeBackWhenItIsUnlinked)
{
    start();
    succeed("/Preset.ashx?c=add&id=s29001&serial=S");
    create("me", "&serial=S");
    start();
    EXPECT_THAT(presets("serial=S"), Not(testing::Contains("s29001")));
    succeed("/Account.ashx?c=drop&username=me&password=sesame&serial=S");
    start();
    EXPECT_THAT(presets("serial=S"), ElementsAre("s29001"));
}

TEST_F(AccountsFileTest, AClaimCodeSurvivesARestartAndLinksOnce)
{
    start();
    create("me");
    const std::string code = ask("/Account.ashx?c=claim&serial=S")["body"][0]["key"];
    const auto link = [&] {
        return m_directory
            ->handle(requestFor("/mydevice?username=me&password=sesame&code=" + code, "POST"))
            .status;
    };
    start();
    EXPECT_EQ(link(), 200);
    start();
    EXPECT_EQ(owner("S"), "me");
    EXPECT_EQ(link(), 403);
}

TEST_F(AccountsFileTest, TheFileIsPrivateAndHoldsNoPasswordsOrSessions)
{
    start();
    create("me");
    ::chmod(m_file.c_str(), 0644);
    const auto session = [this] {
        return std::string(
            ask("/Account.ashx?c=auth&username=me&password=sesame")["body"][0]["session_id"]);
    };
    const std::string first = session();
    succeed("/Account.ashx?c=join&username=me&password=sesame&serial=S");
    EXPECT_THAT(text(), HasSubstr("me@example.org"));
    EXPECT_THAT(text(), Not(HasSubstr("sesame")));
    EXPECT_THAT(text(), Not(HasSubstr(first)));
    EXPECT_EQ(statusOfFile(m_file).st_mode & 07777, 0600u);
    EXPECT_EQ(statusOfFile(m_file + ".last-good").st_mode & 07777, 0600u);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder), {}), 3)
        << "something is there beside the file, its copy and the lock";
    start();
    EXPECT_NE(session(), first);
}

TEST_F(AccountsFileTest, IsNotWrittenWithoutAChange)
{
    start();
    succeed("/Browse.ashx?c=presets&serial=S");
    succeed("/Preset.ashx?c=listFolders&serial=S");
    EXPECT_FALSE(fs::exists(m_file));
    create("me", "&serial=S");
    put("seen");
    ask("/Account.ashx?c=auth&username=me&password=wrong");
    ask("/Account.ashx?c=join&username=me&password=sesame&serial=S");
    ask("/Preset.ashx?c=remove&id=s29001&serial=S");
    ask("/Preset.ashx?c=add&id=nonsense&serial=S");
    m_directory->handle(requestFor("/mydevice?code=ABCDEF&username=me&password=sesame", "POST"));
    EXPECT_EQ(text(), "seen");
    succeed("/Preset.ashx?c=add&id=s29001&serial=S");
    EXPECT_THAT(text(), HasSubstr("s29001"));
}

TEST_F(AccountsFileTest, IsWrittenForEachChange)
{
    start();
    create("me");
    const std::string code = ask("/Account.ashx?c=claim&serial=C")["body"][0]["key"];
    const std::string person = "username=me&password=sesame";
    for (const std::string &target :
        {"/Account.ashx?c=join&serial=S&" + person, "/Account.ashx?c=drop&serial=S&" + person,
            "/mydevice?code=" + code + '&' + person, std::string("/Account.ashx?c=claim&serial=D"),
            "/Preset.ashx?c=add&id=s29001&" + person, "/Preset.ashx?c=remove&id=s29001&" + person,
            std::string("/Preset.ashx?c=add&id=s29001&serial=D"),
            std::string("/Preset.ashx?c=remove&id=s29001&serial=D"),
            std::string("/Preset.ashx?c=addFolder&name=More&serial=D"),
            std::string("/Preset.ashx?c=renameFolder&name=Less&folderId=f2&serial=D"),
            std::string("/Preset.ashx?c=removeFolder&folderId=f2&serial=D")}) {
        put("seen");
        EXPECT_EQ(m_directory->handle(requestFor(target, "POST")).status, 200) << target;
        EXPECT_NE(text(), "seen") << target;
    }
}

TEST_F(AccountsFileTest, DevicesWithoutContentAreNotWritten)
{
    start();
    succeed("/Preset.ashx?c=listFolders&serial=IDLE");
    create("me");
    EXPECT_EQ(Json::parse(text())["devices"].size(), 0u);
}

TEST_F(AccountsFileTest, InvalidUtf8DoesNotDamageTheFile)
{
    start();
    succeed("/Preset.ashx?c=add&url=http://radio.example/%FF&name=A%FFB&serial=S");
    EXPECT_EQ(statusOf(ask("/Preset.ashx?c=add&id=s29001&serial=%FF")), "400");
    EXPECT_EQ(faultCodeOf(ask("/Account.ashx?c=claim&serial=%FE")), "validation.error");
    const std::string before = ask("/Browse.ashx?c=presets&serial=S").dump();
    EXPECT_EQ(refusal(), "");
    EXPECT_EQ(ask("/Browse.ashx?c=presets&serial=S").dump(), before);
}

class DamagedAccountsFile : public AccountsFileTest {
protected:
    void SetUp() override
    {
        start();
        create("me", "&serial=S");
        succeed("/Preset.ashx?c=addFolder&name=More&serial=S");
        succeed("/Preset.ashx?c=add&id=s29001&serial=S");
        succeed("/Preset.ashx?c=add&url=http://radio.example/a&serial=S");
        m_directory.reset();
        m_good = Json::parse(text());
        fs::remove(m_file + ".last-good");
    }
    /// Expects that the file is rejected with this text and left unchanged.
    void expectRefused(const std::string &bytes, const std::string &words)
    {
        put(bytes);
        const std::string message = refusal();
        EXPECT_THAT(message, HasSubstr(words)) << bytes.substr(0, 300);
        EXPECT_THAT(message, HasSubstr(m_file));
        EXPECT_THAT(message, Not(HasSubstr("\n")));
        EXPECT_THAT(message, Not(HasSubstr("$y$")));
        EXPECT_TRUE(text() == bytes);
    }

    Json m_good;
};

TEST_F(DamagedAccountsFile, IsRefusedWhenItIsNotJson)
{
    const std::string good = m_good.dump();
    expectRefused("", "the file is empty");
    expectRefused(good.substr(0, good.size() / 2), "no JSON, at byte");
    expectRefused(good + good, "no JSON, at byte");
    expectRefused("accounts: []", "no JSON, at byte 1");
    expectRefused("{\"version\": 1e999}", "no JSON");
    expectRefused("{\"version\": \"\xFF\"}", "no JSON, at byte");
    expectRefused("[]", "the file: this is no object");
    expectRefused(std::string(100000, '['), "no JSON, at byte");
    expectRefused(std::string(100000, '[') + std::string(100000, ']'), "this is no object");
}

TEST_F(DamagedAccountsFile, IsRefusedWithTheLocationOfTheError)
{
    const std::string account = "/accounts/0";
    const std::string library = account + "/library";
    struct Mistake {
        std::string where;
        Json value;
        const char *words;
    };
    const std::vector<Mistake> mistakes {
        {"/version", 2, "the file: its version is unknown"},
        {"/version", "1", "the file: version is no number"},
        {"/version", 18446744073709551615u, "version is no number, or out of range"},
        {"/next_account", 1, "next_account is no number, or out of range"},
        {"/next_account", 70001, "id is none of an account"},
        {"/next_account", 1.5, "next_account is no number"},
        {"/accounts", Json::object(), "the file: accounts is no list"},
        {"/accounts", nullptr, "the file: accounts is no list"},
        {"/accounts", Json::array({1}), "accounts 1: this is no object"},
        {"/accounts", Json::array(), "devices 1: there is no such account"},
        {"/accounts", Json::array({m_good["accounts"][0], m_good["accounts"][0]}),
            "accounts 2: user_name is empty, or there twice"},
        {"/devices", Json::array({m_good["devices"][0], m_good["devices"][0]}),
            "devices 2: serial is empty, too long, or there twice"},
        {account + "/id", "70x", "accounts 1: id is none"},
        {account + "/user_name", "", "user_name is empty"},
        {account + "/user_name", 7, "user_name is no text"},
        {account + "/email", std::string(10000, 'a'), "email is no text, or too long"},
        {account + "/password_hash", "sesame", "password_hash is none"},
        {account + "/password_hash", "$1$abc$def", "password_hash is none"},
        {account + "/password_hash", "", "password_hash is none"},
        {library, 1, "accounts 1, library: this is no object"},
        {library + "/folders", Json::array(), "there is no folder"},
        {library + "/folders/1/id", "f1", "folders 2: id is none of a folder, or there twice"},
        {library + "/folders/1/id", "f9", "folders 2: id is none of a folder"},
        {library + "/next_folder", 2, "folders 2: id is none of a folder"},
        {library + "/next_folder", 2147483647, "next_folder is no number, or out of range"},
        {library + "/next_address", 1, "presets 2: id is none of a preset"},
        {library + "/presets/0/folder", "f7", "accounts 1, library, presets 1: there is no such"},
        {library + "/presets/0/number", -1, "number is no number, or out of range"},
        {library + "/presets/1/id", "s29001", "presets 2: id is none of a preset"},
        {"/devices/0/serial", "", "serial is empty"},
        {"/devices/0/serial", std::string(Members::MaxSerial + 1, 'x'), "too long"},
        {"/devices/0/account", "you", "devices 1: there is no such account"},
        {"/devices/0/claim_code", false, "claim_code is no text"},
    };
    for (const Mistake &mistake : mistakes) {
        Json damaged = m_good;
        damaged[Json::json_pointer(mistake.where)] = mistake.value;
        expectRefused(damaged.dump(), mistake.words);
    }
    for (const char *key : {"version", "next_account", "accounts", "devices"}) {
        Json damaged = m_good;
        damaged.erase(key);
        expectRefused(damaged.dump(), std::string("the file: ") + key + " is missing");
    }
    put(m_good.dump());
    EXPECT_EQ(refusal(), "");
}

TEST_F(DamagedAccountsFile, IsRefusedWhenItExceedsTheBounds)
{
    Json damaged = m_good;
    for (std::size_t i = 0; i < Members::MaxDevices; ++i)
        damaged["devices"].push_back(damaged["devices"][0]);
    expectRefused(damaged.dump(), "devices is no list, or too long");
    damaged = m_good;
    Json &presets = damaged["accounts"][0]["library"]["presets"];
    for (std::size_t i = 0; i < Library::MaxPresets; ++i)
        presets.push_back(presets[0]);
    expectRefused(damaged.dump(), "presets is no list, or too long");
}

TEST_F(DamagedAccountsFile, IsRefusedWhenItIsTooLarge)
{
    const auto size = AccountsFile::MaxSize + 1;
    fs::resize_file(m_file, size);
    EXPECT_THAT(refusal(), HasSubstr("the file is too large"));
    EXPECT_EQ(fs::file_size(m_file), size);
}

TEST_F(DamagedAccountsFile, IsRefusedWhenItIsNotARegularFile)
{
    fs::remove(m_file);
    fs::create_directory(m_file);
    EXPECT_THAT(refusal(), HasSubstr("no regular file"));
    fs::remove(m_file);
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    EXPECT_THAT(refusal(), HasSubstr("no regular file"));
}

TEST_F(AccountsFileTest, RequiresItsFolderToExist)
{
    m_file = m_folder + "/none/accounts.json";
    EXPECT_THAT(refusal(), HasSubstr("there is no folder for the file"));
}

TEST_F(DamagedAccountsFile, IsReplacedFromItsBackup)
{
    const std::string good = m_good.dump();
    const auto replaceBy = [this](const std::function<void()> &other) {
        return [this, other] {
            fs::remove(m_file);
            other();
        };
    };
    const std::function<void()> damages[] = {
        replaceBy([&] { fs::create_directory(m_file); }),
        [&] { put(""); },
        [&] { put(good.substr(0, good.size() / 2)); },
        [&] { put("{\"version\": 2}"); },
        [&] { fs::resize_file(m_file, AccountsFile::MaxSize + 1); },
        replaceBy([&] { ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0); }),
        replaceBy([&] { fs::create_symlink(m_file, m_file); }),
    };
    put(good);
    int number = 0;
    for (const auto &damage : damages) {
        SCOPED_TRACE(++number);
        start();
        succeed("/Account.ashx?c=claim&serial=" + std::to_string(number));
        m_directory.reset();
        damage();
        m_complaints.clear();
        start();
        EXPECT_EQ(owner("S"), "me");
        ASSERT_EQ(m_complaints.size(), 1u);
        EXPECT_THAT(m_complaints[0], HasSubstr(m_file + ": "));
        EXPECT_THAT(m_complaints[0], HasSubstr("going on with its copy; the file is now "));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(m_file)));
    }
    EXPECT_TRUE(fs::exists(m_file + ".damaged.5"));
}

TEST_F(DamagedAccountsFile, IsRefusedWhenItsBackupIsDamagedToo)
{
    put("");
    std::ofstream(m_file + ".last-good") << "{";
    EXPECT_THAT(refusal(), HasSubstr("the file is empty; its copy: "));
    EXPECT_EQ(text(), "");
}

TEST_F(AccountsFileTest, AMissingFileIsRestoredFromItsBackup)
{
    start();
    create("me", "&serial=S");
    m_directory.reset();
    fs::remove(m_file);
    start();
    EXPECT_EQ(owner("S"), "me");
    EXPECT_THAT(m_complaints, ElementsAre(HasSubstr("the file is gone")));
}

TEST_F(AccountsFileTest, LeftoversOfAnInterruptedWriteAreRemoved)
{
    std::ofstream(m_file + ".new") << "half a wri";
    start();
    EXPECT_FALSE(fs::exists(m_file + ".new"));
}

TEST_F(AccountsFileTest, AChangeThatCannotBeWrittenFailsAndIsRolledBack)
{
    start();
    create("me");
    succeed("/Preset.ashx?c=add&id=s29001&serial=S");
    const std::string session
        = ask("/Account.ashx?c=auth&username=me&password=sesame")["body"][0]["session_id"];
    const std::string old = text();
    const std::string away = m_folder + ".away";
    fs::rename(m_folder, away);
    EXPECT_EQ(statusOf(ask("/Preset.ashx?c=add&id=s29002&serial=S")), "500");
    EXPECT_EQ(statusOf(ask("/Preset.ashx?c=addFolder&name=More&serial=S")), "500");
    EXPECT_EQ(statusOf(ask("/Preset.ashx?c=remove&id=s29001&serial=S")), "500");
    EXPECT_EQ(statusOf(ask("/Account.ashx?c=create&username=you&password=sesame"
                           "&email=you@example.org&postalCode=20095")),
        "500");
    EXPECT_EQ(statusOf(ask("/Account.ashx?c=join&username=me&password=sesame&serial=S")), "500");
    EXPECT_EQ(statusOf(ask("/Account.ashx?c=claim&serial=S")), "500");
    EXPECT_THAT(presets("serial=S"), ElementsAre("s29001"));
    EXPECT_THAT(folders("serial=S"), ElementsAre("General"));
    EXPECT_EQ(owner("S"), "");
    EXPECT_EQ(
        ask("/Account.ashx?c=auth&username=me&password=sesame")["body"][0]["session_id"], session);
    EXPECT_EQ(statusOf(ask("/Account.ashx?c=auth&username=you&password=sesame")), "401");
    ASSERT_EQ(m_complaints.size(), 1u) << "once, however often it fails";
    EXPECT_THAT(m_complaints[0], HasSubstr(m_file));
    EXPECT_THAT(m_complaints[0], HasSubstr("No such file"));

    fs::rename(away, m_folder);
    EXPECT_EQ(text(), old);
    succeed("/Preset.ashx?c=add&id=s29002&serial=S");
    start();
    EXPECT_THAT(presets("serial=S"), ElementsAre("s29001", "s29002"));
    EXPECT_EQ(m_complaints.size(), 1u);
}

TEST_F(AccountsFileTest, TheClaimPageReportsALinkThatCannotBeWritten)
{
    start();
    create("me");
    const std::string code = ask("/Account.ashx?c=claim&serial=S")["body"][0]["key"];
    const ApiRequest linking
        = requestFor("/mydevice?username=me&password=sesame&code=" + code, "POST");
    const std::string away = m_folder + ".away";
    fs::rename(m_folder, away);
    const Answer answer = m_directory->handle(linking);
    EXPECT_EQ(answer.status, 500);
    EXPECT_THAT(answer.body, HasSubstr("cannot be saved now"));
    fs::rename(away, m_folder);
    EXPECT_EQ(owner("S"), "");
    EXPECT_EQ(m_directory->handle(linking).status, 200) << "the code is still good";
}

TEST_F(AccountsFileTest, ChangesFailOnAFullDiskWithoutLosingData)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted";
    m_file = disk.folder() + "/accounts.json";
    start();
    create("me", "&serial=S");
    disk.fill();
    EXPECT_EQ(statusOf(ask("/Preset.ashx?c=add&id=s29001&serial=S")), "500");
    EXPECT_THAT(presets("serial=S"), Not(testing::Contains("s29001")));
    start();
    EXPECT_EQ(owner("S"), "me");
    EXPECT_EQ(statusOf(ask("/Preset.ashx?c=add&id=s29001&serial=S")), "500");
    disk.makeRoom();
    succeed("/Preset.ashx?c=add&id=s29002&serial=S");
    start();
    EXPECT_THAT(presets("serial=S"), ElementsAre("s29002"));
    m_directory.reset();
}

TEST_F(AccountsFileTest, ChangesFailAtTheFileSizeLimit)
{
    start();
    create("me", "&serial=S");
    {
        const FileSizeLimit limit(100);
        EXPECT_EQ(statusOf(ask("/Preset.ashx?c=add&id=s29001&serial=S")), "500");
    }
    EXPECT_THAT(presets("serial=S"), Not(testing::Contains("s29001")));
    start();
    EXPECT_EQ(owner("S"), "me");
}

TEST_F(AccountsFileTest, ChangesFailOnAReadOnlyDisk)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted";
    m_file = disk.folder() + "/accounts.json";
    start();
    create("me", "&serial=S");
    m_directory.reset();
    ASSERT_TRUE(disk.setReadOnly(true));
    start();
    EXPECT_EQ(owner("S"), "me");
    EXPECT_EQ(statusOf(ask("/Preset.ashx?c=add&id=s29001&serial=S")), "500");
    m_directory.reset();
}

TEST_F(AccountsFileTest, ContentThatIsTooLargeToReadIsNotWritten)
{
    LibraryContent many;
    for (std::size_t i = 0; i < Library::MaxPresets; ++i)
        many.presets.push_back(
            {'u' + std::to_string(i + 1), std::string(2000, 'u'), std::string(2000, 'n'), "f1", 1});
    MembersContent content;
    for (int i = 0; i < 45; ++i)
        content.devices[std::to_string(i)].library = Library(many);
    std::vector<std::string> complaints;
    const auto file = AccountsFile::open(
        m_file, [&complaints](const std::string &line) { complaints.push_back(line); });
    put("old");
    ASSERT_TRUE(file);
    EXPECT_FALSE((*file)->write(content));
    EXPECT_THAT(complaints, ElementsAre(HasSubstr("too large")));
    EXPECT_EQ(text(), "old");
}

TEST(DirectoryWithoutAnAccountsFile, WritesNothing)
{
    Directory directory(shippedCatalog(), [] { return MondayMorning; });
    EXPECT_EQ(
        directory.handle(requestFor("/Preset.ashx?c=add&id=s29001&serial=S", "POST")).status, 200);
}

} // namespace
