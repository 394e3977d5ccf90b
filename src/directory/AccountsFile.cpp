// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/AccountsFile.h"

#include "directory/AccountsFormat.h"

#include <filesystem>

namespace directory {

namespace {

namespace fs = std::filesystem;
using Content = files::KeptFile::Content;

MembersContent parsed(const Content &content)
{
    if (content.state == Content::Missing)
        throw std::runtime_error("there is none");
    if (content.state == Content::Damaged)
        throw std::runtime_error(content.problem);
    return parseAccounts(content.bytes);
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
    switch (m_lock.take()) {
    case files::FileLock::Outcome::Taken:
        m_file.removeLeftovers();
        break;
    case files::FileLock::Outcome::Elsewhere:
        throw AccountsInUse(ofAccounts("they are in use: " + m_lock.problem().text));
    case files::FileLock::Outcome::Failed:
        tell(m_lock.problem());
        break;
    }
}

std::string AccountsFile::ofAccounts(const std::string &what) const
{
    return "the accounts in " + m_name + ": " + what;
}

void AccountsFile::tell(const files::Problem &problem)
{
    if (problem && !m_failing)
        m_complain("the accounts cannot be kept in " + m_name + ": " + problem.text);
    m_failing = bool(problem);
}

MembersContent AccountsFile::read()
{
    const Content content = m_file.read();
    try {
        if (content.state != Content::Missing) {
            MembersContent members = parsed(content);
            if (m_lock.isHeld() && m_file.readLastGood().bytes != content.bytes)
                m_file.writeLastGood(content.bytes);
            return members;
        }
    } catch (const std::exception &error) {
        return readLastGood(error.what());
    }
    const bool isNew = m_file.readLastGood().state == Content::Missing;
    return isNew ? MembersContent() : readLastGood("the file is gone");
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
    if (m_file.read().state != Content::Missing) {
        std::string name;
        const files::Problem obstacle = m_file.setAside(name);
        line += obstacle ? "; " + obstacle.text : "; the file is now " + name;
    }
    m_complain(line);
    write(content);
    return content;
}

bool AccountsFile::write(const MembersContent &content)
{
    const std::string text = formatAccounts(content);
    const files::Problem problem = m_lock.isHeld() ? m_file.write(text) : m_lock.problem();
    tell(problem);
    if (!problem)
        m_file.writeLastGood(text); // without it a damaged file is as bad as it was before
    return !problem;
}

} // namespace directory
