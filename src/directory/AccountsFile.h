/// The file in which members outlive a restart. It is small enough to be written as a whole, and
/// replaced in one step: whoever reads it finds the old state or the new one. Lives on one thread.
#pragma once

#include "directory/Members.h"

#include <functional>
#include <string>

namespace directory {

class AccountsFile {
public:
    /// Files beyond this size are neither read nor written.
    static constexpr std::size_t maxSize = std::size_t(32) * 1024 * 1024;
    using Complain = std::function<void(const std::string &)>;

    /// `complain` gets one line when writing begins to fail.
    AccountsFile(std::string file, Complain complain);

    /// Empty when there is no file yet. Throws std::runtime_error with one line that says what is
    /// wrong with the file, or with the folder for it.
    MembersContent read() const;
    /// Leaves the old file when it returns false. Only the file's owner may read the new one.
    bool write(const MembersContent &content);

private:
    std::string m_file;
    Complain m_complain;
    bool m_failing = false;
};

} // namespace directory
