#include "directory/RequestLog.h"

#include "directory/Query.h"

#include <stdexcept>

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
    : m_file(std::fopen(file.c_str(), "ae"))
{
    if (!m_file)
        throw std::runtime_error("the request log " + file + " cannot be opened");
}

void RequestLog::write(std::string_view method, std::string_view target)
{
    const std::string line = std::string(method) + ' ' + withoutPasswords(target) + '\n';
    std::fwrite(line.data(), 1, line.size(), m_file.get());
    std::fflush(m_file.get());
}

} // namespace directory
