// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The file that keeps members across restarts. It is small enough to be rewritten as a whole for
/// each change, and replaced atomically, with a backup beside it (files::KeptFile). Locked against
/// other processes for the lifetime of the object. Not thread-safe.
#pragma once

#include "base/Result.h"
#include "base/files/FileLock.h"
#include "base/files/KeptFile.h"
#include "directory/Members.h"

#include <functional>
#include <memory>
#include <string>

namespace directory {

/// Why the accounts cannot be used.
struct AccountsProblem {
    std::string text; ///< one line
    bool inUse = false; ///< by another process
};

class AccountsFile {
public:
    /// Files beyond this size are neither read nor written.
    static constexpr std::size_t MaxSize = std::size_t(32) * 1024 * 1024;
    using Complain = std::function<void(const std::string &)>;

    /// Locks `file` for this process; its folder must be there. `complain` gets one line when
    /// writing begins to fail, and when a damaged file was moved aside.
    static Result<std::unique_ptr<AccountsFile>, AccountsProblem> open(
        const std::string &file, Complain complain);

    /// Empty when there is no file yet. A damaged file is replaced from its backup; without one it
    /// stays as it is, and the error is one line that says what is wrong.
    Result<MembersContent, std::string> read();
    /// Returns whether the content is on the disk. If not, the file is the old one or, when only
    /// the last fsync failed, perhaps the new one. The file is readable for its owner only.
    bool write(const MembersContent &content);

private:
    AccountsFile(std::string file, Complain complain);

    Result<MembersContent, std::string> readLastGood(const std::string &problem);
    std::string ofAccounts(const std::string &what) const;
    void tell(const Result<void, files::Problem> &written);

    std::string m_name;
    Complain m_complain;
    files::KeptFile m_file;
    files::FileLock m_lock;
    Result<void, files::Problem> m_held;
    bool m_failing = false;
};

} // namespace directory
