/// Who uses the directory: accounts, devices and their presets. All of it is in memory and bounded;
/// a new start forgets it. Not safe for several threads: the server's thread owns it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
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

/// The presets of one account or of one device without an account.
class Library {
public:
    static constexpr std::size_t maxPresets = 200;
    static constexpr std::size_t maxFolders = 50;

    Library();

    const std::vector<Folder> &folders() const { return m_folders; }
    const std::vector<Preset> &presets() const { return m_presets; }
    bool holds(const std::string &id) const;
    const Folder *folder(const std::string &id) const;

    /// All return false when the thing is missing, is there already, or there is no room.
    bool add(Preset preset);
    bool remove(const std::string &id, const std::string &folder);
    bool addFolder(const std::string &name, std::string &id);
    bool renameFolder(const std::string &id, const std::string &name);
    /// Its presets go with it. The first folder stays.
    bool removeFolder(const std::string &id);

private:
    std::vector<Folder> m_folders;
    std::vector<Preset> m_presets;
    int m_nextFolder = 2;
    int m_nextAddress = 1;
};

struct Account {
    std::string id;
    std::string userName;
    std::string password;
    std::string email;
    std::string sessionId;
    Library library;
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
    static constexpr std::size_t maxAccounts = 1000;
    static constexpr std::size_t maxDevices = 1000;
    static constexpr std::size_t maxSerial = 128;

    /// The presets of the account, or of the device or its account; null when nobody is meant.
    const Library *find(const std::string &userName, const std::string &serial) const;
    /// As find, but makes room for a device that is new.
    Library *change(const std::string &userName, const std::string &serial);

    /// Names are compared without case.
    Account *account(const std::string &userName);
    const Account *account(const std::string &userName) const;
    const Account *accountByEmail(const std::string &email) const;
    /// The account when the password is right, else null.
    Account *authenticate(const std::string &userName, const std::string &password);
    /// The fault code, or nothing when the account was made.
    std::string create(const NewAccount &wanted);
    void remove(const std::string &userName);

    /// The account that the device is joined to; null when there is none.
    const Account *joined(const std::string &serial) const;
    /// Return the fault code, or nothing.
    std::string join(Account &account, const std::string &serial);
    std::string drop(const Account &account, const std::string &serial);
    /// The device's claim code, made at its first use; empty when there is no room for the device.
    std::string claimCode(const std::string &serial);
    /// The serial of the device with that code, read without case; empty when there is none.
    std::string claimed(const std::string &code) const;
    void forgetClaimCode(const std::string &serial);

private:
    struct Device {
        std::string account; ///< lower-case name
        std::string claimCode;
        Library library;
    };
    Device *device(const std::string &serial);

    std::map<std::string, Account> m_accounts; ///< by lower-case name
    std::map<std::string, Device> m_devices; ///< by serial
    std::uint64_t m_nextAccount = 70001;
};

} // namespace directory
