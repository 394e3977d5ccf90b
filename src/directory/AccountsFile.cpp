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

MembersContent parsed(const Content &content)
{
    if (!content)
        throw std::runtime_error(content.error().text);
    if (isMissing(content))
        throw std::runtime_error("there is none");
    return parseAccounts(**content);
}

} // namespace

AccountsFile::AccountsFile(std::string file, Complain complain)
    : m_name(std::move(file))
    , m_complain(std::move(complain))
    , m_file(m_name, maxSize)
    , m_lock(m_file.name() + ".lock")
{
    std::error_code error;
    if (!fs::is_directory(fs::absolute(m_name).parent_path(), error))
        throw std::runtime_error(ofAccounts("there is no folder for the file"));
    m_held = m_lock.take();
    if (m_held)
        m_file.removeLeftovers();
    else if (m_held.error().error == files::FileLock::HeldElsewhere)
        throw AccountsInUse(ofAccounts("they are in use: " + m_held.error().text));
    else
        tell(m_held);
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

MembersContent AccountsFile::read()
{
    const Content content = m_file.read();
    try {
        if (!isMissing(content)) {
            MembersContent members = parsed(content);
            const Content copy = m_file.readLastGood();
            if (m_held && (!copy || *copy != *content))
                static_cast<void>(m_file.writeLastGood(**content));
            return members;
        }
    } catch (const std::exception &error) {
        return readLastGood(error.what());
    }
    return isMissing(m_file.readLastGood()) ? MembersContent() : readLastGood("the file is gone");
}

MembersContent AccountsFile::readLastGood(const std::string &problem)
{
    MembersContent content;
    try {
        content = parsed(m_file.readLastGood());
    } catch (const std::exception &error) {
        throw std::runtime_error(ofAccounts(problem + "; its copy: " + error.what()));
    }
    std::string line = ofAccounts(problem + "; going on with its copy");
    if (!isMissing(m_file.read())) {
        const auto name = m_file.setAside();
        line += name ? "; the file is now " + *name : "; " + name.error().text;
    }
    m_complain(line);
    write(content);
    return content;
}

bool AccountsFile::write(const MembersContent &content)
{
    const std::string text = formatAccounts(content);
    const auto written = m_held ? m_file.write(text) : m_held;
    tell(written);
    if (written) // without the copy a damaged file is as bad as it was before
        static_cast<void>(m_file.writeLastGood(text));
    return bool(written);
}

} // namespace directory
