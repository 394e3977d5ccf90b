// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The directory's users: accounts, devices and their presets. All of it is in memory and bounded;
/// the content can be saved and restored. Not thread-safe: the server's thread owns it.
#pragma once

#include "base/Result.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace directory {

struct Folder {
    std::string id;
    std::string name;
};

struct Preset {
    std::string id; ///< a station, a show, or "u6" for an address of the user's own
    std::string url; ///< only for an address
    std::string name; ///< only for an address
    std::string folder;
    int number = 0;
};

struct LibraryContent {
    std::vector<Folder> folders {{"f1", "General"}};
    std::vector<Preset> presets;
    int nextFolder = 2;
    int nextAddress = 1;
};

/// The presets of one account or of one device without an account.
class Library {
public:
    static constexpr std::size_t MaxPresets = 200;
    static constexpr std::size_t MaxFolders = 50;

    /// The content is not checked: it must have a folder, and presets only in its folders.
    explicit Library(LibraryContent content = {});

    const LibraryContent &content() const { return m_content; }
    const std::vector<Folder> &folders() const { return m_content.folders; }
    const std::vector<Preset> &presets() const { return m_content.presets; }
    bool holds(const std::string &id) const;
    const Folder *folder(const std::string &id) const;

    /// All return false when the thing is missing, is there already, or there is no room.
    bool add(Preset preset);
    bool remove(const std::string &id, const std::string &folder);
    /// Its id; none when there is no room or the name is empty, too long or taken.
    std::optional<std::string> addFolder(const std::string &name);
    bool renameFolder(const std::string &id, const std::string &name);
    /// Its presets go with it. The first folder stays.
    bool removeFolder(const std::string &id);

    /// Whether something has changed since the last call.
    bool takeChanges() { return std::exchange(m_changed, false); }

private:
    LibraryContent m_content;
    bool m_changed = false;
};

struct Account {
    std::string id;
    std::string userName;
    std::string passwordHash;
    std::string email;
    std::string sessionId; ///< not kept across restarts
    Library library;
};

struct Device {
    std::string account; ///< lower-case name; empty while it is not joined
    std::string claimCode;
    Library library;
};

struct MembersContent {
    std::map<std::string, Account> accounts; ///< by lower-case name
    std::map<std::string, Device> devices; ///< by serial
    int nextAccount = 70001;
};

struct NewAccount {
    std::string userName;
    std::string password;
    std::string email;
    std::string postalCode;
    std::string city;
    bool knownCountry = false;
};

class Members {
public:
    static constexpr std::size_t MaxAccounts = 1000;
    static constexpr std::size_t MaxDevices = 1000;
    static constexpr std::size_t MaxSerial = 128;

    explicit Members(MembersContent content = {});
    const MembersContent &content() const { return m_content; }
    /// Whether something worth keeping has changed since the last call.
    bool takeChanges();

    /// The presets of the account; without a name those of the device's account, or of the device.
    /// Null when there is none of them.
    const Library *find(const std::string &userName, const std::string &serial) const;
    /// The same for changes: adds a device that is new.
    Library *change(const std::string &userName, const std::string &serial);

    /// Names are compared without case.
    Account *account(const std::string &userName);
    const Account *account(const std::string &userName) const;
    const Account *accountByEmail(const std::string &email) const;
    /// The account when the password is right, else null.
    Account *authenticate(const std::string &userName, const std::string &password);
    /// The error is the web API's fault code.
    Result<void, std::string> create(const NewAccount &wanted);
    void remove(const std::string &userName);

    /// The account that the device is joined to; null when there is none.
    const Account *joined(const std::string &serial) const;
    /// The errors are the web API's fault codes.
    Result<void, std::string> join(Account &account, const std::string &serial);
    Result<void, std::string> drop(const Account &account, const std::string &serial);
    /// The device's claim code, made at its first use; empty when there is no room for the device.
    std::string claimCode(const std::string &serial);
    /// The serial of the device with that code, read without case; empty when there is none.
    std::string claimed(const std::string &code) const;
    void forgetClaimCode(const std::string &serial);

private:
    Device *device(const std::string &serial);

    MembersContent m_content;
    bool m_changed = false;
};

} // namespace directory
