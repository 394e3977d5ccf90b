// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/AccountsFormat.h"

#include "directory/Api.h"
#include "directory/Password.h"

#include <algorithm>
#include <stdexcept>

namespace directory {

namespace {

constexpr int Version = 1;
// Longer than any text that the pages accept.
constexpr std::size_t MaxText = std::size_t(8) * 1024;
constexpr int MaxNumber = 999999999;

/// One object of the file. Lives while the file is parsed.
class Entry {
public:
    Entry(const Json &json, std::string where)
        : m_json(json)
        , m_where(std::move(where))
    {
        if (!json.is_object())
            fail("this is no object");
    }

    [[noreturn]] void fail(const std::string &what) const
    {
        throw std::invalid_argument(m_where + ": " + what);
    }
    std::string text(const char *key) const
    {
        const Json &value = member(key);
        if (!value.is_string() || value.get_ref<const std::string &>().size() > MaxText)
            fail(std::string(key) + " is no text, or too long");
        return value;
    }
    int number(const char *key, int low) const
    {
        const Json &value = member(key);
        if (!value.is_number_integer() || value < low || value > MaxNumber)
            fail(std::string(key) + " is no number, or out of range");
        return value;
    }
    Entry object(const char *key) const { return {member(key), m_where + ", " + key}; }
    /// `visit` gets each element of a list.
    template <typename Visit>
    void each(const char *key, std::size_t most, Visit visit) const
    {
        const Json &list = member(key);
        if (!list.is_array() || list.size() > most)
            fail(std::string(key) + " is no list, or too long");
        std::size_t count = 0;
        for (const Json &element : list)
            visit(Entry(element, m_where + ", " + key + ' ' + std::to_string(++count)));
    }

private:
    const Json &member(const char *key) const
    {
        const auto found = m_json.find(key);
        if (found == m_json.end())
            fail(std::string(key) + " is missing");
        return *found;
    }

    const Json &m_json;
    std::string m_where;
};

/// Whether the id is the prefix and a number below `next`, such as "f3": one that was assigned.
bool givenBefore(int next, const std::string &id, std::string_view prefix)
{
    const int number = id.compare(0, prefix.size(), prefix) == 0
        ? parseNumber(std::string_view(id).substr(prefix.size()))
        : -1;
    return number > 0 && number < next;
}

template <typename List>
bool hasId(const List &list, const std::string &id)
{
    return std::any_of(list.begin(), list.end(), [&id](const auto &each) { return each.id == id; });
}

Json toJson(const Library &library)
{
    const LibraryContent &content = library.content();
    Json folders = Json::array();
    for (const Folder &each : content.folders)
        folders.push_back({{"id", each.id}, {"name", each.name}});
    Json presets = Json::array();
    for (const Preset &each : content.presets) {
        presets.push_back({{"id", each.id}, {"url", each.url}, {"name", each.name},
            {"folder", each.folder}, {"number", each.number}});
    }
    return {{"next_folder", content.nextFolder}, {"next_address", content.nextAddress},
        {"folders", std::move(folders)}, {"presets", std::move(presets)}};
}

Folder readFolder(const Entry &entry, const LibraryContent &content)
{
    Folder folder {entry.text("id"), entry.text("name")};
    if (!givenBefore(content.nextFolder, folder.id, "f") || hasId(content.folders, folder.id))
        entry.fail("id is none of a folder, or there twice");
    return folder;
}

Preset readPreset(const Entry &entry, const LibraryContent &content)
{
    Preset preset;
    preset.id = entry.text("id");
    preset.url = entry.text("url");
    preset.name = entry.text("name");
    preset.folder = entry.text("folder");
    preset.number = entry.number("number", 0);
    const bool valid = preset.url.empty() ? !preset.id.empty()
                                          : givenBefore(content.nextAddress, preset.id, "u");
    if (!valid || hasId(content.presets, preset.id))
        entry.fail("id is none of a preset, or there twice");
    if (!hasId(content.folders, preset.folder))
        entry.fail("there is no such folder");
    return preset;
}

Library readLibrary(const Entry &entry)
{
    LibraryContent content;
    content.folders.clear();
    content.nextFolder = entry.number("next_folder", 2);
    content.nextAddress = entry.number("next_address", 1);
    entry.each("folders", Library::MaxFolders,
        [&](const Entry &each) { content.folders.push_back(readFolder(each, content)); });
    if (content.folders.empty())
        entry.fail("there is no folder");
    entry.each("presets", Library::MaxPresets,
        [&](const Entry &each) { content.presets.push_back(readPreset(each, content)); });
    return Library(std::move(content));
}

Json toJson(const Account &account)
{
    return {{"id", account.id}, {"user_name", account.userName},
        {"password_hash", account.passwordHash}, {"email", account.email},
        {"library", toJson(account.library)}};
}

void readAccount(const Entry &entry, MembersContent &content)
{
    Account account;
    account.id = entry.text("id");
    account.userName = entry.text("user_name");
    account.passwordHash = entry.text("password_hash");
    account.email = entry.text("email");
    account.library = readLibrary(entry.object("library"));
    if (!givenBefore(content.nextAccount, account.id, ""))
        entry.fail("id is none of an account");
    if (!isPasswordHash(account.passwordHash))
        entry.fail("password_hash is none");
    const std::string name = lowered(account.userName);
    if (name.empty() || !content.accounts.emplace(name, std::move(account)).second)
        entry.fail("user_name is empty, or there twice");
}

bool isKnown(const Device &device)
{
    const LibraryContent fresh;
    const LibraryContent &content = device.library.content();
    return !device.account.empty() || !device.claimCode.empty()
        || content.nextFolder != fresh.nextFolder || content.nextAddress != fresh.nextAddress
        || !content.presets.empty() || content.folders.front().name != fresh.folders.front().name;
}

Json toJson(const std::string &serial, const Device &device)
{
    return {{"serial", serial}, {"account", device.account}, {"claim_code", device.claimCode},
        {"library", toJson(device.library)}};
}

void readDevice(const Entry &entry, MembersContent &content)
{
    const std::string serial = entry.text("serial");
    Device device;
    device.account = entry.text("account");
    device.claimCode = entry.text("claim_code");
    device.library = readLibrary(entry.object("library"));
    if (!device.account.empty() && content.accounts.count(device.account) == 0)
        entry.fail("there is no such account");
    if (serial.empty() || serial.size() > Members::MaxSerial
        || !content.devices.emplace(serial, std::move(device)).second)
        entry.fail("serial is empty, too long, or there twice");
}

Json parsedJson(const std::string &text)
{
    try {
        return Json::parse(text);
        // Not error.what(): it quotes the text, which holds password hashes.
    } catch (const Json::parse_error &error) {
        throw std::invalid_argument("this is no JSON, at byte " + std::to_string(error.byte));
    } catch (const Json::exception &) {
        throw std::invalid_argument("this is no JSON that can be read");
    }
}

MembersContent readMembers(const Entry &file)
{
    if (file.number("version", 0) != Version)
        file.fail("its version is unknown here");
    MembersContent content;
    content.nextAccount = file.number("next_account", content.nextAccount);
    file.each("accounts", Members::MaxAccounts,
        [&content](const Entry &each) { readAccount(each, content); });
    file.each("devices", Members::MaxDevices,
        [&content](const Entry &each) { readDevice(each, content); });
    return content;
}

} // namespace

std::string formatAccounts(const MembersContent &content)
{
    Json accounts = Json::array();
    for (const auto &each : content.accounts)
        accounts.push_back(toJson(each.second));
    Json devices = Json::array();
    for (const auto &each : content.devices) {
        if (isKnown(each.second))
            devices.push_back(toJson(each.first, each.second));
    }
    return serialized({{"version", Version}, {"next_account", content.nextAccount},
               {"accounts", std::move(accounts)}, {"devices", std::move(devices)}})
        + '\n';
}

Result<MembersContent, std::string> parseAccounts(const std::string &text)
{
    try {
        const Json json = parsedJson(text);
        return readMembers(Entry(json, "the file"));
    } catch (const std::invalid_argument &mistake) {
        return ::failure(std::string(mistake.what()));
    }
}

} // namespace directory
