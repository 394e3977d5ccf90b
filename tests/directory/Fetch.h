// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// One HTTP exchange over libcurl, with a time limit.
#pragma once

#include <curl/curl.h>
#include <string>

namespace directory::test {

struct FetchOptions {
    std::string method = "GET";
    std::string body; ///< sent when not empty
    std::string header; ///< one more header line
    std::string encoding; ///< the content coding to accept and decode, such as "gzip"
    std::string caFile;
    long timeoutMilliseconds = 10000;
    long redirects = 0;
};

struct Fetched {
    CURLcode code = CURLE_OK;
    long status = 0;
    std::string body;
    std::string headers;
    double seconds = 0;
};

Fetched fetch(const std::string &url, const FetchOptions &options = {});

} // namespace directory::test
