// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Endpoints.h"
#include "directory/Rows.h"

#include <algorithm>

namespace directory {

namespace {

/// The faults of Account.ashx in words.
Answer fault(const std::string &code)
{
    struct Fault {
        const char *code;
        const char *text;
    };
    static constexpr Fault Faults[] = {{"validation.email", "Invalid email"},
        {"validation.password", "Invalid password"}, {"validation.location", "Invalid location"},
        {"validation.userNameExists", "The account name is taken"},
        {"validation.emailExists", "The email is registered already"},
        {"validation.deviceNotAssociated", "No associated account"},
        {"validation.deviceExists", "The device is associated already"}};
    const auto *found = std::find_if(std::begin(Faults), std::end(Faults),
        [&code](const Fault &each) { return code == each.code; });
    return failure("400", found != std::end(Faults) ? found->text : "Validation error", code);
}

Answer answerOf(const Result<void, std::string> &done)
{
    return done ? success({}) : fault(done.error());
}

Answer auth(const Context &context)
{
    const Account *account
        = context.members().authenticate(context.param("username"), context.param("password"));
    if (!account)
        return failure("401", "Invalid user name or password");
    Json element = {{"element", "outline"}, {"type", "text"}, {"text", account->userName},
        {"account_id", account->id}, {"user_name", account->userName},
        {"session_id", account->sessionId}, {"first_name", ""}, {"last_name", ""},
        {"email", account->email}};
    return success({}, Json::array({std::move(element)}));
}

Answer create(const Context &context)
{
    NewAccount wanted;
    wanted.userName = context.param("username");
    wanted.password = context.param("password");
    wanted.email = context.param("email");
    wanted.postalCode = context.param("postalCode");
    wanted.city = context.param("city");
    const auto &regions = context.catalog().regions;
    const std::string countryId = context.param("countryId");
    wanted.knownCountry = std::any_of(regions.begin(), regions.end(),
        [&](const Region &each) { return !countryId.empty() && each.countryId == countryId; });
    Members &members = context.members();
    const auto created = members.create(wanted);
    const std::string serial = context.param("serial");
    if (!created || serial.empty())
        return answerOf(created);
    const auto joined = members.join(*members.account(wanted.userName), serial);
    if (!joined)
        members.remove(wanted.userName); // all or nothing
    return answerOf(joined);
}

Answer joinOrDrop(const Context &context, bool join)
{
    Account *account
        = context.members().authenticate(context.param("username"), context.param("password"));
    if (!account)
        return failure("403", "Invalid user name or password");
    const std::string serial = context.param("serial");
    return answerOf(
        join ? context.members().join(*account, serial) : context.members().drop(*account, serial));
}

Answer query(const Context &context)
{
    const Account *account = context.members().joined(context.param("serial"));
    return account ? success({}, Json::array({textRow(account->userName)}))
                   : fault("validation.deviceNotAssociated");
}

/// No e-mail is sent, but the address must be an account's.
Answer remind(const Context &context)
{
    return context.members().accountByEmail(context.param("email")) ? success({})
                                                                    : fault("validation.email");
}

Answer reset(const Context &context)
{
    const Members &members = context.members();
    const bool known = members.account(context.param("username"))
        || members.accountByEmail(context.param("email"));
    return known ? success({}) : fault("validation.error");
}

Answer claim(const Context &context)
{
    const std::string code = context.members().claimCode(context.param("serial"));
    if (code.empty())
        return fault("validation.error");
    Json row = textRow("Go to " + context.here("/mydevice") + " and enter the code " + code);
    row["key"] = code;
    return success({}, Json::array({std::move(row)}));
}

bool changesSomething(const std::string &c)
{
    for (const char *each : {"create", "join", "drop", "remind", "reset", "claim"}) {
        if (c == each)
            return true;
    }
    return false;
}

Answer accountOf(const Context &context)
{
    const std::string c = lowered(context.param("c"));
    if (context.request().method != "POST" && changesSomething(c)) {
        Answer answer = textAnswer(405, "This needs a POST request.");
        answer.headers.emplace_back("Allow", "POST");
        return answer;
    }
    if (c == "auth")
        return auth(context);
    if (c == "create")
        return create(context);
    if (c == "join" || c == "drop")
        return joinOrDrop(context, c == "join");
    if (c == "query")
        return query(context);
    if (c == "remind")
        return remind(context);
    if (c == "reset")
        return reset(context);
    return c == "claim" ? claim(context) : failure("404", "Invalid method", "api.methodNotFound");
}

} // namespace

Answer account(const Context &context)
{
    return notStored(accountOf(context));
}

Answer notKept()
{
    return notStored(failure("500", "The change cannot be kept: the disk takes no more"));
}

} // namespace directory
