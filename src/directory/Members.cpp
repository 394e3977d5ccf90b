// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Members.h"

#include "directory/Password.h"
#include "directory/Query.h"

#include <algorithm>
#include <glib.h>
#include <random>

namespace directory {

namespace {

std::string randomText(std::size_t length)
{
    // Without letters and digits that look alike: claim codes are read from a display and typed.
    static constexpr char Alphabet[] = "ABCDEFGHJKMNPQRSTUVWXYZ23456789";
    static std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, sizeof Alphabet - 2);
    std::string text;
    while (text.size() < length)
        text += Alphabet[pick(source)];
    return text;
}

/// Only UTF-8 survives the accounts file, which is JSON.
bool plainText(const std::string &text)
{
    return g_utf8_validate_len(text.data(), text.size(), nullptr);
}

bool plainName(const std::string &name)
{
    return !name.empty() && name.size() <= 12
        && std::all_of(name.begin(), name.end(), [](char c) { return g_ascii_isalnum(c); });
}

bool plausibleEmail(const std::string &email)
{
    const std::size_t at = email.find('@');
    const std::size_t dot = email.rfind('.');
    return at != std::string::npos && at > 0 && email.find('@', at + 1) == std::string::npos
        && dot != std::string::npos && dot > at + 1 && dot + 1 < email.size() && email.size() <= 254
        && email.find_first_of(" \t\r\n") == std::string::npos && plainText(email);
}

bool plausiblePassword(const std::string &password)
{
    return password.size() >= 4 && password.size() <= 12
        && password.find('\0') == std::string::npos;
}

} // namespace

Library::Library(LibraryContent content)
    : m_content(std::move(content))
{
}

bool Library::holds(const std::string &id) const
{
    return std::any_of(m_content.presets.begin(), m_content.presets.end(),
        [&id](const Preset &preset) { return preset.id == id; });
}

const Folder *Library::folder(const std::string &id) const
{
    const auto found = std::find_if(m_content.folders.begin(), m_content.folders.end(),
        [&id](const Folder &each) { return each.id == id; });
    return found != m_content.folders.end() ? &*found : nullptr;
}

bool Library::add(Preset preset)
{
    if (preset.folder.empty())
        preset.folder = m_content.folders.front().id;
    if (!folder(preset.folder) || m_content.presets.size() >= MaxPresets)
        return false;
    if (!preset.url.empty())
        preset.id = 'u' + std::to_string(m_content.nextAddress++);
    const auto same = std::find_if(m_content.presets.begin(), m_content.presets.end(),
        [&preset](const Preset &each) { return each.id == preset.id; });
    if (same != m_content.presets.end())
        return true; // adding is idempotent
    m_content.presets.push_back(std::move(preset));
    m_changed = true;
    return true;
}

bool Library::remove(const std::string &id, const std::string &folder)
{
    const auto end = std::remove_if(
        m_content.presets.begin(), m_content.presets.end(), [&](const Preset &each) {
            return each.id == id && (folder.empty() || each.folder == folder);
        });
    const bool removed = end != m_content.presets.end();
    m_changed |= removed;
    m_content.presets.erase(end, m_content.presets.end());
    return removed;
}

std::optional<std::string> Library::addFolder(const std::string &name)
{
    const bool taken = std::any_of(m_content.folders.begin(), m_content.folders.end(),
        [&name](const Folder &each) { return each.name == name; });
    if (name.empty() || name.size() > 200 || taken || m_content.folders.size() >= MaxFolders)
        return std::nullopt;
    std::string id = 'f' + std::to_string(m_content.nextFolder++);
    m_content.folders.push_back({id, name});
    m_changed = true;
    return id;
}

bool Library::renameFolder(const std::string &id, const std::string &name)
{
    const auto found = std::find_if(m_content.folders.begin(), m_content.folders.end(),
        [&id](const Folder &each) { return each.id == id; });
    if (found == m_content.folders.end() || name.empty() || name.size() > 200)
        return false;
    found->name = name;
    m_changed = true;
    return true;
}

bool Library::removeFolder(const std::string &id)
{
    const auto found = std::find_if(m_content.folders.begin() + 1, m_content.folders.end(),
        [&id](const Folder &each) { return each.id == id; });
    if (found == m_content.folders.end())
        return false;
    m_content.folders.erase(found);
    m_content.presets.erase(std::remove_if(m_content.presets.begin(), m_content.presets.end(),
                                [&id](const Preset &each) { return each.folder == id; }),
        m_content.presets.end());
    m_changed = true;
    return true;
}

Members::Members(MembersContent content)
    : m_content(std::move(content))
{
}

bool Members::takeChanges()
{
    bool changed = std::exchange(m_changed, false);
    for (auto &each : m_content.accounts)
        changed |= each.second.library.takeChanges();
    for (auto &each : m_content.devices)
        changed |= each.second.library.takeChanges();
    return changed;
}

const Library *Members::find(const std::string &userName, const std::string &serial) const
{
    if (!userName.empty()) {
        const Account *named = account(userName);
        return named ? &named->library : nullptr;
    }
    const auto found = m_content.devices.find(serial);
    if (found == m_content.devices.end())
        return nullptr;
    const auto owner = m_content.accounts.find(found->second.account);
    return owner != m_content.accounts.end() ? &owner->second.library : &found->second.library;
}

Library *Members::change(const std::string &userName, const std::string &serial)
{
    if (userName.empty() && !device(serial))
        return nullptr;
    return const_cast<Library *>(find(userName, serial));
}

const Account *Members::account(const std::string &userName) const
{
    const auto found = m_content.accounts.find(lowered(userName));
    return found != m_content.accounts.end() ? &found->second : nullptr;
}

Account *Members::account(const std::string &userName)
{
    return const_cast<Account *>(static_cast<const Members *>(this)->account(userName));
}

const Account *Members::accountByEmail(const std::string &email) const
{
    const auto found = std::find_if(m_content.accounts.begin(), m_content.accounts.end(),
        [&email](const auto &each) { return equalIgnoringCase(each.second.email, email); });
    return found != m_content.accounts.end() ? &found->second : nullptr;
}

Account *Members::authenticate(const std::string &userName, const std::string &password)
{
    Account *named = account(userName);
    if (!named || !passwordMatches(password, named->passwordHash))
        return nullptr;
    if (named->sessionId.empty())
        named->sessionId = randomText(24);
    return named;
}

Result<void, std::string> Members::create(const NewAccount &wanted)
{
    if (!plausibleEmail(wanted.email))
        return ::failure(std::string("validation.email"));
    if (!plausiblePassword(wanted.password))
        return ::failure(std::string("validation.password"));
    if (wanted.postalCode.empty() && (wanted.city.empty() || !wanted.knownCountry))
        return ::failure(std::string("validation.location"));
    if (!plainName(wanted.userName) || m_content.accounts.size() >= MaxAccounts)
        return ::failure(std::string("validation.error"));
    if (account(wanted.userName))
        return ::failure(std::string("validation.userNameExists"));
    if (accountByEmail(wanted.email))
        return ::failure(std::string("validation.emailExists"));
    Account made;
    made.id = std::to_string(m_content.nextAccount++);
    made.userName = wanted.userName;
    made.passwordHash = passwordHash(wanted.password);
    made.email = wanted.email;
    m_content.accounts.emplace(lowered(wanted.userName), std::move(made));
    m_changed = true;
    return {};
}

void Members::remove(const std::string &userName)
{
    m_changed |= m_content.accounts.erase(lowered(userName)) > 0;
}

Device *Members::device(const std::string &serial)
{
    if (serial.empty() || serial.size() > MaxSerial || !plainText(serial))
        return nullptr;
    const auto found = m_content.devices.find(serial);
    if (found != m_content.devices.end())
        return &found->second;
    if (m_content.devices.size() >= MaxDevices)
        return nullptr;
    return &m_content.devices[serial];
}

const Account *Members::joined(const std::string &serial) const
{
    const auto found = m_content.devices.find(serial);
    return found != m_content.devices.end() && !found->second.account.empty()
        ? account(found->second.account)
        : nullptr;
}

Result<void, std::string> Members::join(Account &account, const std::string &serial)
{
    Device *joining = device(serial);
    if (!joining)
        return ::failure(std::string("validation.error"));
    if (joined(serial))
        return ::failure(std::string("validation.deviceExists"));
    joining->account = lowered(account.userName);
    m_changed = true;
    return {};
}

Result<void, std::string> Members::drop(const Account &account, const std::string &serial)
{
    if (joined(serial) != &account)
        return ::failure(std::string("validation.deviceNotAssociated"));
    m_content.devices[serial].account.clear();
    m_changed = true;
    return {};
}

std::string Members::claimCode(const std::string &serial)
{
    Device *claiming = device(serial);
    if (!claiming)
        return {};
    if (claiming->claimCode.empty()) {
        claiming->claimCode = randomText(6);
        m_changed = true;
    }
    return claiming->claimCode;
}

std::string Members::claimed(const std::string &code) const
{
    const auto found = std::find_if(
        m_content.devices.begin(), m_content.devices.end(), [&code](const auto &each) {
            return !code.empty() && equalIgnoringCase(each.second.claimCode, code);
        });
    return found != m_content.devices.end() ? found->first : std::string();
}

void Members::forgetClaimCode(const std::string &serial)
{
    const auto found = m_content.devices.find(serial);
    if (found == m_content.devices.end())
        return;
    found->second.claimCode.clear();
    m_changed = true;
}

} // namespace directory
