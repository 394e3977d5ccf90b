// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Requests and answers of the web API, independent of HTTP: what endpoints take and return.
#pragma once

#include "directory/Audio.h"
#include "directory/Query.h"

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace directory {

/// Keeps members in the order in which they were added, as the web API's answers do.
using Json = nlohmann::ordered_json;

/// Seconds since the Unix epoch.
using Clock = std::function<std::int64_t()>;

struct ApiRequest {
    std::string method = "GET";
    std::string path; ///< decoded, "/Browse.ashx"
    Query query; ///< the target's items, then those of a form body
    std::string host; ///< as the client named it; may be anything
    bool secure = false;
    std::string range; ///< the header's value
    bool wantsTitles = false; ///< "Icy-MetaData: 1"
};

struct Answer {
    int status = 200;
    std::string contentType = "application/json; charset=utf-8";
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;
    Audio audio; ///< instead of a body
};

/// A successful answer; an empty title is left out of the head.
Answer success(const std::string &title, Json body = Json::array());
/// A failure in the web API's form: HTTP 200, the status in the JSON head. An empty code is left
/// out.
Answer failure(const std::string &status, const std::string &fault, const std::string &code = {});
/// With "Cache-Control: no-store", for what depends on the user or may change at any time.
Answer notStored(Answer answer);
Answer textAnswer(int status, const std::string &text);
/// Invalid UTF-8 is replaced with U+FFFD: a title may repeat a client's query.
std::string serialized(const Json &json);

} // namespace directory
