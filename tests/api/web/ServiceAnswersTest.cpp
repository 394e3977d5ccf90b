// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/ServiceAnswers.h"

#include <gtest/gtest.h>

#include <vector>

void PrintTo(const VeskServiceFault &fault, std::ostream *out)
{
    *out << "kind " << int(fault.kind) << ", code " << fault.code;
}

namespace {

using Status = HttpClientStatus;
using Fault = VeskServiceFault;

const ServiceAnswerForm Form {{QStringLiteral("head"), QStringLiteral("status")},
    {QStringLiteral("200"), QStringLiteral("ok")}};

HttpClientResult exchange(Status status, int code = 0, const QByteArray &data = {})
{
    return HttpClientResult(VeskUrl(QStringLiteral("http://a.example/")), status, code, data);
}

TEST(ServiceAnswers, AnExchangeThatFailedIsAFaultOfItsKind)
{
    const std::vector<std::pair<Status, Fault::Kind>> kinds {
        {Status::ResolveFailed, Fault::Unreachable}, {Status::ConnectFailed, Fault::Unreachable},
        {Status::TooManyRedirects, Fault::Unreachable}, {Status::TimedOut, Fault::TimedOut},
        {Status::TlsFailed, Fault::Insecure}, {Status::Broken, Fault::Broken},
        {Status::TooLarge, Fault::Broken}};
    for (const auto &[status, kind] : kinds) {
        for (const ServiceAnswerForm &form : {Form, ServiceAnswerForm()})
            EXPECT_EQ(serviceFaultOf(exchange(status), form), (Fault {kind, 0}));
        EXPECT_TRUE(hasFailed(exchange(status)));
    }
}

TEST(ServiceAnswers, ExchangesThatWereNotSentAreNoFault)
{
    for (const Status status : {Status::Cancelled, Status::InvalidRequest}) {
        EXPECT_TRUE(serviceFaultOf(exchange(status), Form).isEmpty());
        EXPECT_FALSE(hasFailed(exchange(status)));
    }
}

TEST(ServiceAnswers, AnHttpErrorIsAFault)
{
    const QByteArray good = R"({"head": {"status": "200"}})";
    for (const int code : {400, 403, 500, 503}) {
        for (const QByteArray &data : {QByteArray(), QByteArray("<html>"), good}) {
            EXPECT_EQ(serviceFaultOf(exchange(Status::Success, code, data), Form),
                (Fault {Fault::HttpStatus, code}));
        }
        EXPECT_TRUE(hasFailed(exchange(Status::Success, code)));
    }
    EXPECT_FALSE(hasFailed(exchange(Status::Success, 399)));
}

TEST(ServiceAnswers, AnHttpErrorWithAnAnswerIsReportedByTheService)
{
    const auto both = exchange(Status::Success, 403, R"({"head": {"status": "401"}})");
    EXPECT_EQ(serviceFaultOf(both, Form), (Fault {Fault::Reported, 401}));
    EXPECT_EQ(serviceFaultOf(both, {}), (Fault {Fault::HttpStatus, 403}));
}

TEST(ServiceAnswers, AnAnswerSaysItselfWhetherItIsGood)
{
    const auto fault = [](const char *data) {
        return serviceFaultOf(exchange(Status::Success, 200, data), Form);
    };
    EXPECT_EQ(fault(R"({"head": {"status": "200"}, "body": []})"), Fault());
    EXPECT_EQ(fault(R"({"head": {"status": 200}})"), Fault());
    EXPECT_EQ(fault(R"({"head": {"status": "ok"}})"), Fault());
    EXPECT_EQ(
        fault(R"({"head": {"status": "500", "fault": "x"}})"), (Fault {Fault::Reported, 500}));
    EXPECT_EQ(fault(R"({"head": {"status": 403}})"), (Fault {Fault::Reported, 403}));
    EXPECT_EQ(fault(R"({"head": {"status": "odd"}})"), (Fault {Fault::Reported, 0}));
    EXPECT_EQ(fault(R"({"head": {"status": ""}})"), (Fault {Fault::Reported, 0}));
    EXPECT_EQ(
        fault(R"({"head": {"status": "99999999999999999999"}})"), (Fault {Fault::Reported, 0}));
}

TEST(ServiceAnswers, AnAnswerOfAnotherFormIsUnreadable)
{
    for (const char *data :
        {"", "<html>", "[]", "5", "null", "{}", R"({"head": 5})", R"({"head": []})",
            R"({"head": {}})", R"({"head": {"status": null}})", R"({"head": {"status": ["200"]}})",
            R"({"head": {"status": true}})", R"({"head": {"status": 200)"}) {
        const auto odd = exchange(Status::Success, 200, data);
        EXPECT_EQ(serviceFaultOf(odd, Form), (Fault {Fault::Unreadable, 0})) << data;
        EXPECT_EQ(serviceFaultOf(odd, {}), Fault())
            << data << ": without a form nothing is known of answers";
        EXPECT_FALSE(hasFailed(odd)) << data << ": hasFailed() does not read answers";
    }
}

TEST(ServiceAnswers, RecognisesRefusalsByTheirCodes)
{
    EXPECT_TRUE((Fault {Fault::HttpStatus, 401}).isBareRefusal());
    EXPECT_TRUE((Fault {Fault::HttpStatus, 403}).isBareRefusal());
    EXPECT_TRUE((Fault {Fault::Reported, 403}).isRefusal());
    EXPECT_FALSE((Fault {Fault::Reported, 403}).isBareRefusal());
    EXPECT_FALSE((Fault {Fault::HttpStatus, 404}).isRefusal());
    EXPECT_FALSE((Fault {Fault::Unreadable, 403}).isRefusal());
}

} // namespace
