// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/AccountsFile.h"

#include "directory/AccountsFormat.h"

#include <filesystem>

namespace directory {

namespace {

namespace fs = std::filesystem;
using Content = Result<files::KeptFile::Content, files::Problem>;

bool isMissing(const Content &content)
{
    return content && !*content;
}

Result<MembersContent, std::string> parsed(const Content &content)
{
    if (!content)
        return ::failure(content.error().text);
    if (isMissing(content))
        return ::failure(std::string("there is none"));
    return parseAccounts(**content);
}

} // namespace

AccountsFile::AccountsFile(std::string file, Complain complain)
    : m_name(std::move(file))
    , m_complain(std::move(complain))
    , m_file(m_name, MaxSize)
    , m_lock(m_file.name() + ".lock")
{
}

Result<std::unique_ptr<AccountsFile>, AccountsProblem> AccountsFile::open(
    const std::string &file, Complain complain)
{
    std::unique_ptr<AccountsFile> opened(new AccountsFile(file, std::move(complain)));
    std::error_code error;
    if (!fs::is_directory(fs::absolute(file).parent_path(), error))
        return ::failure(AccountsProblem {opened->ofAccounts("there is no folder for the file")});
    opened->m_held = opened->m_lock.take();
    const auto &held = opened->m_held;
    if (held)
        opened->m_file.removeLeftovers();
    else if (held.error().error == files::FileLock::HeldElsewhere)
        return ::failure(
            AccountsProblem {opened->ofAccounts("they are in use: " + held.error().text), true});
    else
        opened->tell(held);
    return opened;
}

std::string AccountsFile::ofAccounts(const std::string &what) const
{
    return "the accounts in " + m_name + ": " + what;
}

void AccountsFile::tell(const Result<void, files::Problem> &written)
{
    if (!written && !m_failing)
        m_complain("the accounts cannot be kept in " + m_name + ": " + written.error().text);
    m_failing = !written;
}

Result<MembersContent, std::string> AccountsFile::read()
{
    const Content content = m_file.read();
    if (isMissing(content)) {
        if (isMissing(m_file.readLastGood()))
            return MembersContent(); // the first start
        return readLastGood("the file is gone");
    }
    auto members = parsed(content);
    if (!members)
        return readLastGood(members.error());
    const Content copy = m_file.readLastGood();
    if (m_held && (!copy || *copy != *content))
        static_cast<void>(m_file.writeLastGood(**content));
    return members;
}

Result<MembersContent, std::string> AccountsFile::readLastGood(const std::string &problem)
{
    auto content = parsed(m_file.readLastGood());
    if (!content)
        return ::failure(ofAccounts(problem + "; its copy: " + content.error()));
    std::string line = ofAccounts(problem + "; going on with its copy");
    if (!isMissing(m_file.read())) {
        const auto name = m_file.setAside();
        line += name ? "; the file is now " + *name : "; " + name.error().text;
    }
    m_complain(line);
    write(*content);
    return content;
}

bool AccountsFile::write(const MembersContent &content)
{
    const std::string text = formatAccounts(content);
    const auto written = m_held ? m_file.write(text) : m_held;
    tell(written);
    if (written) // if the copy fails, only the next damage is harder to repair
        static_cast<void>(m_file.writeLastGood(text));
    return bool(written);
}

} // namespace directory
