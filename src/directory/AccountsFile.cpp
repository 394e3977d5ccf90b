#include "directory/AccountsFile.h"

#include "directory/AccountsFormat.h"

#include <filesystem>
#include <fstream>
#include <glib.h>
#include <stdexcept>

namespace directory {

namespace {

namespace fs = std::filesystem;

constexpr int ownerOnly = 0600;

std::string readAll(const std::string &file)
{
    std::ifstream in(file, std::ios::binary);
    std::string text;
    char buffer[65536];
    while (in.read(buffer, sizeof buffer) || in.gcount() > 0) {
        text.append(buffer, static_cast<std::size_t>(in.gcount()));
        if (text.size() > AccountsFile::maxSize)
            throw std::runtime_error("the file is too large");
    }
    if (!in.eof())
        throw std::runtime_error("the file cannot be read");
    return text;
}

MembersContent readFrom(const std::string &file)
{
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found) {
        if (!fs::is_directory(fs::absolute(file).parent_path(), error))
            throw std::runtime_error("there is no folder for the file");
        return {};
    }
    if (status.type() != fs::file_type::regular)
        throw std::runtime_error("this is no file that can be read");
    return parseAccounts(readAll(file));
}

/// What went wrong; empty when nothing did.
std::string replace(const std::string &file, const std::string &text)
{
    if (text.size() > AccountsFile::maxSize)
        return "they are too many";
    GError *error = nullptr;
    g_file_set_contents_full(file.c_str(), text.data(), static_cast<gssize>(text.size()),
        static_cast<GFileSetContentsFlags>(
            G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_DURABLE),
        ownerOnly, &error);
    std::string message;
    if (error)
        message = error->message;
    g_clear_error(&error);
    return message;
}

} // namespace

AccountsFile::AccountsFile(std::string file, Complain complain)
    : m_file(std::move(file))
    , m_complain(std::move(complain))
{
}

MembersContent AccountsFile::read() const
{
    try {
        return readFrom(m_file);
    } catch (const std::exception &error) {
        throw std::runtime_error("the accounts in " + m_file + ": " + error.what());
    }
}

bool AccountsFile::write(const MembersContent &content)
{
    const std::string problem = replace(m_file, formatAccounts(content));
    if (!problem.empty() && !m_failing)
        m_complain("the accounts cannot be kept in " + m_file + ": " + problem);
    m_failing = !problem.empty();
    return !m_failing;
}

} // namespace directory
