// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/FaultControl.h"

namespace directory {

namespace {

std::vector<std::string> textsIn(const std::string &body)
{
    const Json json = Json::parse(body, nullptr, false);
    std::vector<std::string> texts;
    if (json.is_array()) {
        for (const Json &each : json)
            texts.push_back(each.is_string() ? each.get<std::string>() : std::string());
        return texts;
    }
    for (std::string &line : split(body, '\n')) {
        if (line.back() == '\r')
            line.pop_back();
        if (!line.empty())
            texts.push_back(std::move(line));
    }
    return texts;
}

Answer listed(const Faults &faults)
{
    Answer answer;
    answer.body = serialized({{"faults", faults.texts()}}) + '\n';
    return notStored(std::move(answer));
}

} // namespace

Answer controlFaults(Faults &faults, const std::string &method, const std::string &body)
{
    if (method == "DELETE")
        faults.clear();
    if (method == "POST") {
        Faults changed = faults;
        for (const std::string &text : textsIn(body)) {
            auto fault = Faults::parse(text);
            if (!fault)
                return textAnswer(400, fault.error());
            if (!changed.add(std::move(*fault)))
                return textAnswer(400, "there are too many faults");
        }
        faults = std::move(changed);
    }
    return method == "GET" || method == "HEAD" || method == "POST" || method == "DELETE"
        ? listed(faults)
        : textAnswer(405, "Only GET, POST and DELETE are known here.");
}

} // namespace directory
