#include "directory/Members.h"

#include "directory/Query.h"

#include <algorithm>
#include <random>

namespace directory {

namespace {

std::string randomText(std::size_t length)
{
    // Without letters that are easily taken for digits: claim codes are typed from a display.
    static constexpr char alphabet[] = "ABCDEFGHJKMNPQRSTUVWXYZ23456789";
    static std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, sizeof alphabet - 2);
    std::string text;
    while (text.size() < length)
        text += alphabet[pick(source)];
    return text;
}

bool plainName(const std::string &name)
{
    return !name.empty() && name.size() <= 12 && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
}

bool plausibleEmail(const std::string &email)
{
    const std::size_t at = email.find('@');
    const std::size_t dot = email.rfind('.');
    return at != std::string::npos && at > 0 && email.find('@', at + 1) == std::string::npos
        && dot != std::string::npos && dot > at + 1 && dot + 1 < email.size() && email.size() <= 254
        && email.find_first_of(" \t\r\n") == std::string::npos;
}

} // namespace

Library::Library()
    : m_folders {{"f1", "General"}}
{
}

bool Library::holds(const std::string &id) const
{
    return std::any_of(m_presets.begin(), m_presets.end(),
        [&id](const Preset &preset) { return preset.id == id; });
}

const Folder *Library::folder(const std::string &id) const
{
    const auto found = std::find_if(
        m_folders.begin(), m_folders.end(), [&id](const Folder &each) { return each.id == id; });
    return found != m_folders.end() ? &*found : nullptr;
}

bool Library::add(Preset preset)
{
    if (preset.folder.empty())
        preset.folder = m_folders.front().id;
    if (!folder(preset.folder) || m_presets.size() >= maxPresets)
        return false;
    if (!preset.url.empty())
        preset.id = 'u' + std::to_string(m_nextAddress++);
    const auto same = std::find_if(m_presets.begin(), m_presets.end(),
        [&preset](const Preset &each) { return each.id == preset.id; });
    if (same != m_presets.end())
        return true; // pressing the button twice is no mistake
    m_presets.push_back(std::move(preset));
    return true;
}

bool Library::remove(const std::string &id, const std::string &folder)
{
    const auto end = std::remove_if(m_presets.begin(), m_presets.end(), [&](const Preset &each) {
        return each.id == id && (folder.empty() || each.folder == folder);
    });
    const bool removed = end != m_presets.end();
    m_presets.erase(end, m_presets.end());
    return removed;
}

bool Library::addFolder(const std::string &name, std::string &id)
{
    const bool taken = std::any_of(m_folders.begin(), m_folders.end(),
        [&name](const Folder &each) { return each.name == name; });
    if (name.empty() || name.size() > 200 || taken || m_folders.size() >= maxFolders)
        return false;
    id = 'f' + std::to_string(m_nextFolder++);
    m_folders.push_back({id, name});
    return true;
}

bool Library::renameFolder(const std::string &id, const std::string &name)
{
    const auto found = std::find_if(
        m_folders.begin(), m_folders.end(), [&id](const Folder &each) { return each.id == id; });
    if (found == m_folders.end() || name.empty() || name.size() > 200)
        return false;
    found->name = name;
    return true;
}

bool Library::removeFolder(const std::string &id)
{
    const auto found = std::find_if(m_folders.begin() + 1, m_folders.end(),
        [&id](const Folder &each) { return each.id == id; });
    if (found == m_folders.end())
        return false;
    m_folders.erase(found);
    m_presets.erase(std::remove_if(m_presets.begin(), m_presets.end(),
                        [&id](const Preset &each) { return each.folder == id; }),
        m_presets.end());
    return true;
}

const Library *Members::find(const std::string &userName, const std::string &serial) const
{
    if (!userName.empty()) {
        const Account *named = account(userName);
        return named ? &named->library : nullptr;
    }
    const auto found = m_devices.find(serial);
    if (found == m_devices.end())
        return nullptr;
    const auto owner = m_accounts.find(found->second.account);
    return owner != m_accounts.end() ? &owner->second.library : &found->second.library;
}

Library *Members::change(const std::string &userName, const std::string &serial)
{
    if (userName.empty() && !device(serial))
        return nullptr;
    return const_cast<Library *>(find(userName, serial));
}

const Account *Members::account(const std::string &userName) const
{
    const auto found = m_accounts.find(lowered(userName));
    return found != m_accounts.end() ? &found->second : nullptr;
}

Account *Members::account(const std::string &userName)
{
    return const_cast<Account *>(static_cast<const Members *>(this)->account(userName));
}

const Account *Members::accountByEmail(const std::string &email) const
{
    const auto found = std::find_if(m_accounts.begin(), m_accounts.end(),
        [&email](const auto &each) { return equalIgnoringCase(each.second.email, email); });
    return found != m_accounts.end() ? &found->second : nullptr;
}

Account *Members::authenticate(const std::string &userName, const std::string &password)
{
    Account *named = account(userName);
    if (!named || named->password != password)
        return nullptr;
    if (named->sessionId.empty())
        named->sessionId = randomText(24);
    return named;
}

std::string Members::create(const NewAccount &wanted)
{
    if (!plausibleEmail(wanted.email))
        return "validation.email";
    if (wanted.password.size() < 4 || wanted.password.size() > 12)
        return "validation.password";
    if (wanted.postalCode.empty() && (wanted.city.empty() || !wanted.knownCountry))
        return "validation.location";
    if (!plainName(wanted.userName) || m_accounts.size() >= maxAccounts)
        return "validation.error";
    if (account(wanted.userName))
        return "validation.userNameExists";
    if (accountByEmail(wanted.email))
        return "validation.emailExists";
    Account made;
    made.id = std::to_string(m_nextAccount++);
    made.userName = wanted.userName;
    made.password = wanted.password;
    made.email = wanted.email;
    m_accounts.emplace(lowered(wanted.userName), std::move(made));
    return {};
}

void Members::remove(const std::string &userName)
{
    m_accounts.erase(lowered(userName));
}

Members::Device *Members::device(const std::string &serial)
{
    if (serial.empty() || serial.size() > maxSerial)
        return nullptr;
    const auto found = m_devices.find(serial);
    if (found != m_devices.end())
        return &found->second;
    if (m_devices.size() >= maxDevices)
        return nullptr;
    return &m_devices[serial];
}

const Account *Members::joined(const std::string &serial) const
{
    const auto found = m_devices.find(serial);
    return found != m_devices.end() && !found->second.account.empty()
        ? account(found->second.account)
        : nullptr;
}

std::string Members::join(Account &account, const std::string &serial)
{
    Device *joining = device(serial);
    if (!joining)
        return "validation.error";
    if (joined(serial))
        return "validation.deviceExists";
    joining->account = lowered(account.userName);
    return {};
}

std::string Members::drop(const Account &account, const std::string &serial)
{
    if (joined(serial) != &account)
        return "validation.deviceNotAssociated";
    m_devices[serial].account.clear();
    return {};
}

std::string Members::claimCode(const std::string &serial)
{
    Device *claiming = device(serial);
    if (!claiming)
        return {};
    if (claiming->claimCode.empty())
        claiming->claimCode = randomText(6);
    return claiming->claimCode;
}

std::string Members::claimed(const std::string &code) const
{
    const auto found = std::find_if(m_devices.begin(), m_devices.end(), [&code](const auto &each) {
        return !code.empty() && equalIgnoringCase(each.second.claimCode, code);
    });
    return found != m_devices.end() ? found->first : std::string();
}

void Members::forgetClaimCode(const std::string &serial)
{
    const auto found = m_devices.find(serial);
    if (found != m_devices.end())
        found->second.claimCode.clear();
}

} // namespace directory
