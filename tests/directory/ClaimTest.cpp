// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;

namespace {

class ClaimPage : public DirectoryTest {
protected:
    void SetUp() override
    {
        ask(requestFor("/Account.ashx?c=create&username=me&password=sesame&postalCode=1"
                       "&email=me@example.org",
            "POST"));
        m_code = json("/Account.ashx?c=claim&serial=S", "POST")["body"][0]["key"];
    }
    Answer link(const std::string &code, const std::string &password = "sesame")
    {
        return answer("/mydevice?username=me&code=" + code + "&password=" + password, "POST");
    }
    std::string owner(const std::string &serial)
    {
        const Json rows = json("/Account.ashx?c=query&serial=" + serial)["body"];
        return rows.empty() ? std::string() : rows[0].value("text", "");
    }

    std::string m_code;
};

TEST_F(ClaimPage, IsAFormUnderAStrictSecurityPolicy)
{
    const Answer page = answer("/mydevice");
    EXPECT_EQ(page.status, 200);
    EXPECT_EQ(page.contentType, "text/html; charset=utf-8");
    EXPECT_THAT(page.body, HasSubstr("<form method=\"post\" action=\"/mydevice\">"));
    EXPECT_THAT(page.body, HasSubstr("<meta name=\"viewport\" content=\"width=device-width"));
    EXPECT_THAT(page.body, Not(HasSubstr("<script")));
    EXPECT_THAT(page.headers, Contains(Pair("Cache-Control", "no-store")));
    EXPECT_THAT(page.headers, Contains(Pair("X-Content-Type-Options", "nosniff")));
    EXPECT_THAT(page.headers,
        Contains(Pair("Content-Security-Policy",
            testing::AllOf(HasSubstr("default-src 'none'"), HasSubstr("style-src 'self'"),
                HasSubstr("form-action 'self'"), HasSubstr("frame-ancestors 'none'")))));
    EXPECT_EQ(answer("/mydevice.css").contentType, "text/css; charset=utf-8");
}

TEST_F(ClaimPage, ACodeLinksADeviceOnce)
{
    const Answer linked = link(lowered(m_code));
    EXPECT_EQ(linked.status, 200);
    EXPECT_THAT(linked.body, HasSubstr("linked to me."));
    EXPECT_EQ(owner("S"), "me");
    EXPECT_EQ(link(m_code).status, 403); // used up
}

TEST_F(ClaimPage, DoesNotRevealWhichInputIsWrong)
{
    const Answer code = link("AAAAAA");
    const Answer password = link(m_code, "wrong");
    EXPECT_EQ(code.status, 403);
    EXPECT_EQ(password.status, 403);
    EXPECT_EQ(code.body, password.body);
    EXPECT_THAT(password.body, Not(HasSubstr("wrong")));
    EXPECT_EQ(link("").status, 403);
    EXPECT_EQ(owner("S"), "");
}

TEST_F(ClaimPage, RefusesADeviceThatIsLinkedAlready)
{
    ask(requestFor("/Account.ashx?c=join&username=me&password=sesame&serial=S", "POST"));
    EXPECT_EQ(link(m_code).status, 409);
    EXPECT_EQ(owner("S"), "me");
}

TEST_F(ClaimPage, ChangesNothingWithoutPost)
{
    EXPECT_EQ(answer("/mydevice?username=me&password=sesame&code=" + m_code).status, 200);
    EXPECT_EQ(owner("S"), "");
}

} // namespace
