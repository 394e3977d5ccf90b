// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Api.h"

namespace directory {

std::string serialized(const Json &json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Answer success(const std::string &title, Json body)
{
    Json head = Json::object();
    if (!title.empty())
        head["title"] = title;
    head["status"] = "200";
    Answer answer;
    answer.body = serialized({{"head", std::move(head)}, {"body", std::move(body)}});
    return answer;
}

Answer failure(const std::string &status, const std::string &fault, const std::string &code)
{
    Json head = {{"status", status}, {"fault", fault}};
    if (!code.empty())
        head["fault_code"] = code;
    Answer answer;
    answer.body = serialized({{"head", std::move(head)}, {"body", Json::array()}});
    return answer;
}

Answer notStored(Answer answer)
{
    answer.headers.emplace_back("Cache-Control", "no-store");
    return answer;
}

Answer textAnswer(int status, const std::string &text)
{
    Answer answer;
    answer.status = status;
    answer.contentType = "text/plain; charset=utf-8";
    answer.body = text + '\n';
    return answer;
}

} // namespace directory
