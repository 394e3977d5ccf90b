// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/Fetch.h"

#include <memory>

namespace directory::test {

namespace {

std::size_t append(char *data, std::size_t size, std::size_t count, void *text)
{
    static_cast<std::string *>(text)->append(data, size * count);
    return size * count;
}

} // namespace

Fetched fetch(const std::string &url, const FetchOptions &options)
{
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    Fetched result;
    result.code = initialised;
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy(
        curl_easy_init(), curl_easy_cleanup);
    if (initialised != CURLE_OK || !easy)
        return result;
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
        nullptr, curl_slist_free_all);
    if (!options.header.empty())
        headers.reset(curl_slist_append(nullptr, options.header.c_str()));
    curl_easy_setopt(easy.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy.get(), CURLOPT_PROXY, "");
    curl_easy_setopt(easy.get(), CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy.get(), CURLOPT_TIMEOUT_MS, options.timeoutMilliseconds);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &result.body);
    curl_easy_setopt(easy.get(), CURLOPT_HEADERFUNCTION, append);
    curl_easy_setopt(easy.get(), CURLOPT_HEADERDATA, &result.headers);
    curl_easy_setopt(easy.get(), CURLOPT_HTTPHEADER, headers.get());
    if (!options.body.empty()) {
        curl_easy_setopt(easy.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(options.body.size()));
        curl_easy_setopt(easy.get(), CURLOPT_POSTFIELDS, options.body.c_str());
    } else if (options.method == "POST") {
        curl_easy_setopt(easy.get(), CURLOPT_POSTFIELDSIZE, 0L);
        curl_easy_setopt(easy.get(), CURLOPT_POSTFIELDS, "");
    } else if (options.method == "HEAD") {
        curl_easy_setopt(easy.get(), CURLOPT_NOBODY, 1L);
    }
    if (options.method != "GET" && options.method != "HEAD")
        curl_easy_setopt(easy.get(), CURLOPT_CUSTOMREQUEST, options.method.c_str());
    if (!options.encoding.empty())
        curl_easy_setopt(easy.get(), CURLOPT_ACCEPT_ENCODING, options.encoding.c_str());
    if (!options.caFile.empty())
        curl_easy_setopt(easy.get(), CURLOPT_CAINFO, options.caFile.c_str());
    curl_easy_setopt(easy.get(), CURLOPT_FOLLOWLOCATION, options.redirects > 0 ? 1L : 0L);
    curl_easy_setopt(easy.get(), CURLOPT_MAXREDIRS, options.redirects);

    result.code = curl_easy_perform(easy.get());
    curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &result.status);
    curl_easy_getinfo(easy.get(), CURLINFO_TOTAL_TIME, &result.seconds);
    return result;
}

} // namespace directory::test
