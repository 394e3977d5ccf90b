// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;

namespace {

using Report = DirectoryTest;

TEST_F(Report, AcceptsStreamAndTimeReports)
{
    EXPECT_EQ(answer("/Report.ashx?c=stream&id=s1&listenId=5&render=json").body,
        R"({"head":{"status":"200"},"body":[]})");
    EXPECT_EQ(statusOf(json("/Report.ashx?c=stream&streamUrl=http%3A%2F%2Fx%2F&error=404")), "200");
    EXPECT_EQ(statusOf(json("/Report.ashx?c=time&id=s1&duration=12&trigger=stop", "POST")), "200");
    EXPECT_EQ(statusOf(json("/Report.ashx?c=status")), "200");
}

TEST_F(Report, RefusesReportsWithoutAStream)
{
    EXPECT_EQ(statusOf(json("/Report.ashx?c=stream")), "400");
    EXPECT_EQ(statusOf(json("/Report.ashx?c=time&duration=12", "POST")), "400");
    EXPECT_EQ(statusOf(json("/Report.ashx?c=time&id=s1&duration=-3", "POST")), "400");
    EXPECT_EQ(statusOf(json("/Report.ashx?c=nope")), "404");
}

TEST_F(Report, TheWizardEndsAfterItsQuestions)
{
    const std::string id = stationNamed("The Half Door").id;
    const Json questions = body("/Report.ashx?c=wizard&serial=S&id=" + id);
    ASSERT_GE(questions.size(), 3u);
    for (const Json &question : questions) {
        EXPECT_EQ(question["type"], "link");
        const Json last = body(targetOf(question));
        ASSERT_EQ(last.size(), 1u);
        EXPECT_EQ(last[0]["nav"], "stop");
    }
    const std::string stream = 'e' + id.substr(1) + '1';
    EXPECT_EQ(body("/Report.ashx?c=wizard&id=" + stream).size(), questions.size());
    EXPECT_EQ(faultCodeOf(json("/Report.ashx?c=wizard&id=s0")), "request.idInvalid");
    EXPECT_EQ(faultCodeOf(json("/Report.ashx?c=wizard&id=" + stream + '9')), "request.idInvalid");
}

TEST_F(Report, FeedbackRequiresAText)
{
    EXPECT_EQ(statusOf(json("/Report.ashx?c=feedback&text=hello")), "200");
    EXPECT_EQ(faultCodeOf(json("/Report.ashx?c=feedback")), "validation.feedback");
}

} // namespace
