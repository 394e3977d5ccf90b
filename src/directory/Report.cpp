// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Endpoints.h"
#include "directory/Rows.h"

namespace directory {

namespace {

constexpr std::size_t MaxFeedback = 4000;

/// Questions first; choosing one of them leads to the last page.
Answer wizard(const Context &context)
{
    const std::string id = context.param("id");
    const Catalog &catalog = context.catalog();
    if (!catalog.station(id) && !catalog.show(id) && !catalog.topic(id)
        && !catalog.stream(id).station)
        return failure("400", "Invalid ID", "request.idInvalid");
    if (!context.param("step").empty()) {
        Json thanks = textRow("Thank you. We will look into it.");
        thanks["nav"] = "stop";
        return success("Report a problem", Json::array({std::move(thanks)}));
    }
    struct Question {
        const char *step;
        const char *text;
    };
    static constexpr Question Questions[]
        = {{"silent", "There is no sound"}, {"stutters", "It stops again and again"},
            {"wrong", "This is another station"}, {"details", "Its name, logo or genre is wrong"}};
    Json rows = Json::array();
    for (const Question &question : Questions)
        rows.push_back(linkRow(question.text,
            context.api("Report.ashx", {{"c", "wizard"}, {"id", id}, {"step", question.step}})));
    return success("What is wrong?", std::move(rows));
}

Answer feedback(const Context &context)
{
    const std::string text = context.param("text");
    return text.empty() || text.size() > MaxFeedback
        ? failure("400", "The feedback is empty or too long", "validation.feedback")
        : success({});
}

/// A report names a stream by the item's id, its address, or both.
Answer streamReport(const Context &context)
{
    return context.param("id").empty() && context.param("streamUrl").empty()
        ? failure("400", "Invalid ID", "request.idInvalid")
        : success({});
}

Answer timeReport(const Context &context)
{
    const bool timed = parseNumber(context.param("duration")) >= 0;
    return context.param("id").empty() || !timed
        ? failure("400", "Invalid ID or duration", "request.idInvalid")
        : success({});
}

Answer reportOf(const Context &context)
{
    const std::string c = lowered(context.param("c"));
    if (c == "stream")
        return streamReport(context);
    if (c == "time")
        return timeReport(context);
    if (c == "wizard")
        return wizard(context);
    if (c == "feedback")
        return feedback(context);
    return c == "status" || c == "timelist"
        ? success({})
        : failure("404", "Invalid method", "api.methodNotFound");
}

} // namespace

Answer report(const Context &context)
{
    return notStored(reportOf(context));
}

} // namespace directory
