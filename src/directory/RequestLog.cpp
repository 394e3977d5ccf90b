// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/RequestLog.h"

#include "directory/Query.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace directory {

std::string withoutPasswords(std::string_view target)
{
    const std::size_t question = target.find('?');
    if (question == std::string_view::npos)
        return std::string(target);
    std::string out(target.substr(0, question + 1));
    std::string_view rest = target.substr(question + 1);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('&'), rest.size());
        const std::string_view pair = rest.substr(0, end);
        const std::size_t equals = pair.find('=');
        const bool secret = equals != std::string_view::npos
            && equalIgnoringCase(percentDecoded(pair.substr(0, equals), true), "password");
        out += secret ? std::string(pair.substr(0, equals + 1)) + "***" : std::string(pair);
        if (end < rest.size())
            out += '&';
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return out;
}

RequestLog::RequestLog(const std::string &file)
{
    constexpr mode_t Mode = 0666; // less what the umask takes
    auto opened = files::openRegular(file, O_WRONLY | O_APPEND | O_CREAT, Mode);
    if (!opened)
        throw std::runtime_error("the request log " + file + ": " + opened.error().text);
    m_file = *std::move(opened);
}

void RequestLog::write(std::string_view method, std::string_view target)
{
    const std::string line = std::string(method) + ' ' + withoutPasswords(target) + '\n';
    // On a full disk the rest of the line is lost; the request is answered all the same.
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t count = ::write(m_file.number(), rest.data(), rest.size());
        if (count < 0 && errno != EINTR)
            return;
        rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

} // namespace directory
