// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/HttpSettings.h"
#include "fuzz/fuzzing.h"

#include <cstring>
#include <memory>
#include <optional>
#include <string>

// The response heads of an exchange, line by line: when libcurl follows a redirect that the rule
// accepts, it neither leaves http and https nor goes from https to http.

namespace {

using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

/// The value that libcurl reads from a line with a Location field; none for other fields and for an
/// empty value. libcurl uses the first one of a redirect.
std::optional<std::string> locationIn(const std::string &line)
{
    constexpr char Name[] = "location:";
    if (curl_strnequal(line.c_str(), Name, sizeof Name - 1) == 0)
        return std::nullopt;
    const char *const Blank = " \t\r\n\v\f";
    const std::size_t begin = line.find_first_not_of(Blank, sizeof Name - 1);
    if (begin == std::string::npos)
        return std::nullopt;
    const std::size_t end = line.find_first_of("\r\n", begin);
    const std::string value = line.substr(begin, end == std::string::npos ? end : end - begin);
    return value.substr(0, value.find_last_not_of(Blank) + 1);
}

/// Resolves \a location against \a url, in place, as libcurl does; false when libcurl rejects it.
bool follow(CURLU *url, const std::string &location)
{
    return curl_url_set(url, CURLUPART_URL, location.c_str(),
               CURLU_URLENCODE | CURLU_ALLOW_SPACE | CURLU_PATH_AS_IS)
        == CURLUE_OK;
}

std::string schemeOf(CURLU *url)
{
    char *scheme = nullptr;
    FUZZ_REQUIRE(curl_url_get(url, CURLUPART_SCHEME, &scheme, 0) == CURLUE_OK);
    const std::string text = scheme;
    curl_free(scheme);
    return text;
}

/// Processes \a heads as libcurl does: a status line begins a new head.
void read(const std::string &heads, bool isHttps)
{
    const Url url(curl_url(), &curl_url_cleanup);
    FUZZ_REQUIRE(curl_url_set(url.get(), CURLUPART_URL,
                     isHttps ? "https://radio.example/a" : "http://radio.example/a", 0)
        == CURLUE_OK);
    HttpRedirectRule rule;
    rule.start(isHttps);
    std::optional<std::string> next;
    long status = 0;
    for (std::size_t at = 0, end = 0; at < heads.size(); at = end) {
        end = heads.find('\n', at);
        end = end == std::string::npos ? heads.size() : end + 1;
        const std::string line = heads.substr(at, end - at);
        if (std::memchr(line.data(), 0, line.size()))
            return; // libcurl rejects a NUL in a head
        if (curl_strnequal(line.c_str(), "HTTP/", 5) != 0) {
            if (next && !follow(url.get(), *next))
                return;
            next.reset();
            status = line.size() > 9 ? std::strtol(line.c_str() + 9, nullptr, 10) : 0;
        }
        const std::string before = schemeOf(url.get());
        const auto verdict = rule.takeLine(line, status);
        FUZZ_REQUIRE(verdict != HttpRedirectRule::TooLong || end > HttpRedirectRule::MaxHeadBytes);
        if (verdict != HttpRedirectRule::Fine)
            return;
        const std::optional<std::string> location = locationIn(line);
        if (!location || next || status / 100 != 3)
            continue;
        next = location;
        const Url ahead(curl_url_dup(url.get()), &curl_url_cleanup);
        if (!follow(ahead.get(), *location))
            return;
        const std::string scheme = schemeOf(ahead.get());
        FUZZ_REQUIRE(scheme == "https" || (scheme == "http" && before == "http"));
    }
    FUZZ_REQUIRE(heads.size() <= HttpRedirectRule::MaxHeadBytes);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string heads(reinterpret_cast<const char *>(data), size);
    read(heads, false);
    read(heads, true);
    return 0;
}
