// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;
using testing::HasSubstr;

namespace {

class Account : public DirectoryTest {
protected:
    Json post(const std::string &query)
    {
        return json("/Account.ashx?render=json&" + query, "POST");
    }
    std::string code(const std::string &query) { return faultCodeOf(post(query)); }
    void create()
    {
        ASSERT_EQ(statusOf(post("c=create&username=me&password=sesame&email=me@example.org"
                                "&postalCode=20095")),
            "200");
    }
};

TEST_F(Account, AuthReturnsTheAccount)
{
    create();
    const Json body = post("c=auth&username=ME&password=sesame")["body"];
    ASSERT_EQ(body.size(), 1u);
    EXPECT_EQ(body[0]["user_name"], "me");
    EXPECT_EQ(body[0]["email"], "me@example.org");
    EXPECT_FALSE(std::string(body[0]["session_id"]).empty());
    EXPECT_FALSE(body[0].contains("password"));
}

TEST_F(Account, AWrongPasswordIs401WithoutACode)
{
    create();
    for (const char *query :
        {"c=auth&username=me&password=Sesame", "c=auth&username=you", "c=auth"}) {
        const Json answer = post(query);
        EXPECT_EQ(statusOf(answer), "401") << query;
        EXPECT_FALSE(answer["head"].contains("fault_code")) << query;
    }
}

TEST_F(Account, CreateReportsTheInvalidField)
{
    create();
    const std::string good = "&password=sesame&postalCode=1";
    EXPECT_EQ(code("c=create&username=you&email=nope" + good), "validation.email");
    EXPECT_EQ(code("c=create&username=you&email=" + good), "validation.email");
    EXPECT_EQ(code("c=create&username=you&email=a@b.cd&password=abc&postalCode=1"),
        "validation.password");
    EXPECT_EQ(code("c=create&username=you&email=a@b.cd&password=1234567890123&postalCode=1"),
        "validation.password");
    EXPECT_EQ(code("c=create&username=you&email=a@b.cd&password=sesa%00me&postalCode=1"),
        "validation.password");
    EXPECT_EQ(code("c=create&username=you&email=a@b.%FF" + good), "validation.email");
    EXPECT_EQ(code("c=create&username=you&email=a@b.cd&password=sesame"), "validation.location");
    EXPECT_EQ(code("c=create&username=you&email=a@b.cd&password=sesame&city=X&countryId=n0"),
        "validation.location");
    EXPECT_EQ(code("c=create&username=a%20b&email=a@b.cd" + good), "validation.error");
    EXPECT_EQ(code("c=create&username=Me&email=a@b.cd" + good), "validation.userNameExists");
    EXPECT_EQ(code("c=create&username=you&email=ME@example.org" + good), "validation.emailExists");
    EXPECT_EQ(statusOf(post(
                  "c=create&username=you&email=a@b.cd&password=sesame&city=Bonn&countryId=n88")),
        "200");
}

TEST_F(Account, JoiningOrDroppingADeviceTwiceFails)
{
    create();
    EXPECT_EQ(code("c=query&serial=S"), "validation.deviceNotAssociated");
    EXPECT_EQ(
        code("c=drop&username=me&password=sesame&serial=S"), "validation.deviceNotAssociated");
    EXPECT_EQ(statusOf(post("c=join&username=me&password=sesame&serial=S")), "200");
    EXPECT_EQ(code("c=join&username=me&password=sesame&serial=S"), "validation.deviceExists");
    const Json body = post("c=query&serial=S")["body"];
    ASSERT_EQ(body.size(), 1u);
    EXPECT_EQ(body[0].dump(), R"({"element":"outline","type":"text","text":"me"})");
    EXPECT_EQ(statusOf(post("c=drop&username=me&password=sesame&serial=S")), "200");
    EXPECT_EQ(code("c=query&serial=S"), "validation.deviceNotAssociated");
}

TEST_F(Account, JoiningWithAWrongPasswordIsForbiddenWithoutACode)
{
    create();
    const Json answer = post("c=join&username=me&password=wrong&serial=S");
    EXPECT_EQ(statusOf(answer), "403");
    EXPECT_FALSE(answer["head"].contains("fault_code"));
}

TEST_F(Account, CreatingForALinkedDeviceCreatesNoAccount)
{
    create();
    post("c=join&username=me&password=sesame&serial=S");
    EXPECT_EQ(code("c=create&username=you&email=a@b.cd&password=sesame&postalCode=1&serial=S"),
        "validation.deviceExists");
    EXPECT_EQ(statusOf(post("c=auth&username=you&password=sesame")), "401");
}

TEST_F(Account, ADeviceKeepsItsClaimCode)
{
    const Json first = post("c=claim&serial=S")["body"];
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0]["element"], "outline");
    const std::string key = first[0]["key"];
    EXPECT_EQ(key.size(), 6u);
    EXPECT_THAT(std::string(first[0]["text"]), HasSubstr(key));
    EXPECT_EQ(post("c=claim&serial=S")["body"][0]["key"], key);
    EXPECT_NE(post("c=claim&serial=T")["body"][0]["key"], key);
    EXPECT_EQ(code("c=claim&serial="), "validation.error");
    EXPECT_EQ(
        code("c=claim&serial=" + std::string(Members::MaxSerial + 1, 'x')), "validation.error");
}

TEST_F(Account, RemindAndResetRequireAKnownUser)
{
    create();
    EXPECT_EQ(statusOf(post("c=remind&email=me@example.org")), "200");
    EXPECT_EQ(code("c=remind&email=you@example.org"), "validation.email");
    EXPECT_EQ(statusOf(post("c=reset&username=me")), "200");
    EXPECT_EQ(statusOf(post("c=reset&email=me@example.org")), "200");
    EXPECT_EQ(statusOf(post("c=reset")), "400");
}

TEST_F(Account, ChangesRequirePost)
{
    for (const char *c : {"create", "join", "drop", "remind", "reset", "claim"})
        EXPECT_EQ(answer(std::string("/Account.ashx?c=") + c).status, 405) << c;
    EXPECT_EQ(answer("/Account.ashx?c=query&serial=S").status, 200);
    EXPECT_EQ(code("c=nope"), "api.methodNotFound");
}

TEST_F(Account, AnswersAreNotCacheable)
{
    EXPECT_THAT(answer("/Account.ashx?c=query&serial=S", "POST").headers,
        testing::Contains(testing::Pair("Cache-Control", "no-store")));
}

} // namespace
