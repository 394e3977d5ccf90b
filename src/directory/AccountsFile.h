// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The file in which members outlive a restart. It is small enough to be written as a whole, and
/// replaced in one step, with a copy of what it held last beside it (files::KeptFile). Held for
/// this process alone as long as this lives. Lives on one thread.
#pragma once

#include "base/Result.h"
#include "base/files/FileLock.h"
#include "base/files/KeptFile.h"
#include "directory/Members.h"

#include <functional>
#include <memory>
#include <string>

namespace directory {

/// Why the accounts cannot be had.
struct AccountsProblem {
    std::string text; ///< one line
    bool inUse = false; ///< by another process
};

class AccountsFile {
public:
    /// Files beyond this size are neither read nor written.
    static constexpr std::size_t maxSize = std::size_t(32) * 1024 * 1024;
    using Complain = std::function<void(const std::string &)>;

    /// Locks `file` for this process; its folder must be there. `complain` gets one line when
    /// writing begins to fail, and when a damaged file was moved aside.
    static Result<std::unique_ptr<AccountsFile>, AccountsProblem> open(
        const std::string &file, Complain complain);

    /// Empty when there is no file yet. What a damaged file held last comes from its copy; without
    /// one the file stays as it is, and the error is one line that says what is wrong.
    Result<MembersContent, std::string> read();
    /// Returns false when the content is not on the disk; the file is the old one then, or, when
    /// the disk failed at the very end, perhaps the new one. Only the file's owner may read it.
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
