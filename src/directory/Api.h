// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The requests and answers of the web API, free of any server: what endpoints take and give.
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
/// A failure as the web API tells it: HTTP 200, the status in the head. An empty code is left out.
Answer failure(const std::string &status, const std::string &fault, const std::string &code = {});
Answer textAnswer(int status, const std::string &text);
/// Bytes that are no UTF-8 are replaced: a client's query may come back in a title.
std::string serialized(const Json &json);

} // namespace directory
