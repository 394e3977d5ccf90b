// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInRequest.h"

#include "api/web/CMErrorHelper.h"
#include "api/web/VeskJson.h"
#include "tests/modules/tunein/TuneInFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

const QByteArray Good = R"({"head":{"status":"200","title":"Found"},"body":[{"element":"audio"}]})";

VeskUrl api(const QString &target)
{
    return VeskUrl("http://opml.radiotime.com"_s + target);
}

/// A request that sends nothing and records its calls.
class SilentRequest : public TuneInRequest {
public:
    SilentRequest(CMTuneInWorker *worker, QStringList &calls)
        : TuneInRequest(worker)
        , m_calls(calls)
    {
    }

    ~SilentRequest() override { m_calls.append("end"_s); }

    CMError request(const VeskUrl &url, RequestType, VeskTuneInResponse &) override
    {
        m_calls.append(url.path());
        return CMError();
    }

private:
    QStringList &m_calls;
};

class TuneInRequestTest : public TuneInFixture {
protected:
    TuneInRequestTest()
    {
        m_response.insert("before"_s, true);
        m_before = m_response;
        start();
        log().clear();
    }

    /// One exchange on the worker's thread, as nodes do.
    CMError request(const QString &target, TuneInRequest::RequestType type = TuneInRequest::Get)
    {
        CMError error;
        onWorker([&] { error = TuneInRequest(worker()).request(api(target), type, m_response); });
        return error;
    }

    CMError parse(const QByteArray &data)
    {
        return TuneInRequest(worker()).parseData(data, m_response);
    }

    void expectStandardError(const CMError &error, const char *message)
    {
        EXPECT_EQ(error.name(), CMError::DefaultName());
        EXPECT_EQ(error.message(), TrString("TuneIn", message));
        EXPECT_EQ(error.title(), TrString("CMError"_s, CMError::DefaultTitle()));
        EXPECT_EQ(error.size(), 3);
        expectUntouched();
    }

    void expectUntouched() { EXPECT_EQ(m_response, m_before); }

    VeskTuneInResponse m_response;
    VeskTuneInResponse m_before;
};

} // namespace

TEST_F(TuneInRequestTest, ReplacesTheResponseOnSuccess)
{
    answer("/Describe.ashx", Good);
    EXPECT_TRUE(request("/Describe.ashx?c=genres"_s).isEmpty());
    EXPECT_EQ(m_response.head().title(), "Found"_s);
    EXPECT_EQ(m_response.body().at(0).element(), "audio"_s);
    EXPECT_FALSE(m_response.contains("before"_s));
}

TEST_F(TuneInRequestTest, AddsNothingToTheUrlAndChoosesTheMethod)
{
    answerAll(Good);
    request("/a?x=1"_s, TuneInRequest::Get);
    request("/b?y=2"_s, TuneInRequest::Post);
    expectRequests({"GET /a?x=1", "POST /b?y=2"});
    EXPECT_EQ(int(TuneInRequest::Get), 0);
    EXPECT_EQ(int(TuneInRequest::Post), 1);
}

TEST_F(TuneInRequestTest, LogsEachStepOfASuccess)
{
    answerAll(Good);
    request("/a"_s);
    const QStringList lines = log().lines();
    ASSERT_THAT(lines, Not(IsEmpty()));
    EXPECT_EQ(lines.first(), "TRACE Enter TuneInRequest::request:"_s);
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("parsing data: size: "_s + QString::number(Good.size()),
            "Data successfully parsed."_s));
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
}

TEST_F(TuneInRequestTest, SendsNothingWhileTheNetworkIsDown)
{
    setNetwork(false);
    for (const char *path : {"/a", "/Account.ashx", "/Account.ashx?c=join"}) {
        const QString target = QLatin1String(path);
        log().clear();
        const CMError error = request(target);
        EXPECT_EQ(error, CMErrorHelper::create(CURLE_COULDNT_CONNECT, api(target), "TuneIn"_s));
        EXPECT_TRUE(error.name().contains("7"_s));
        expectUntouched();
        expectRequests({});
        EXPECT_THAT(log().lines(),
            ElementsAre("TRACE Enter TuneInRequest::request:"_s, "ERROR Network is down!"_s))
            << path;
    }
}

TEST_F(TuneInRequestTest, ReportsAnUnreachableServerAsInvalidData)
{
    closeServer();
    expectStandardError(request("/a"_s), "Invalid data received.");
    EXPECT_THAT(
        log().lines("ERROR"_s), ElementsAre("TuneInRequest::parseData: Received empty data!"_s));
}

TEST_F(TuneInRequestTest, ReportsAnEmptyBody)
{
    expectStandardError(parse({}), "Invalid data received.");
    EXPECT_THAT(log().lines(),
        ElementsAre("DEBUG parsing data: size: 0"_s,
            "ERROR TuneInRequest::parseData: Received empty data!"_s));
}

TEST_F(TuneInRequestTest, ReportsJsonThatDoesNotParse)
{
    const QByteArray broken = R"({"head":{"status":"200"})";
    VeskError parseError;
    VeskJson::parse(broken, parseError);
    expectStandardError(parse(broken), "Invalid data returned.");
    EXPECT_THAT(log().lines(),
        ElementsAre("DEBUG parsing data: size: 24"_s,
            "ERROR Failed to parse data, error: "_s + printed(parseError)));
}

TEST_F(TuneInRequestTest, RunsTheFaultPathForAnEmptyObject)
{
    const CMError error = parse("{}");
    EXPECT_EQ(error.name(), CMError::DefaultName() + ":0"_s);
    EXPECT_EQ(error.message(), TrString("TuneIn", "TuneIn request failed."));
    expectUntouched();
    EXPECT_THAT(log().lines("ERROR"_s),
        ElementsAre("TuneIn request failed: code: , message: ''"_s,
            "tuneInErrorToCMError: fault code: '', http status: ''"_s));
}

TEST_F(TuneInRequestTest, TurnsAFaultIntoItsErrorAndLogsIt)
{
    const CMError error = parse(
        R"({"head":{"status":"400","fault":"Bad mail","fault_code":"validation.email"},"body":[]})");
    EXPECT_EQ(error.name(), CMError::DefaultName() + ":1"_s);
    expectUntouched();
    EXPECT_THAT(log().lines("ERROR"_s),
        ElementsAre("TuneIn request failed: code: validation.email, message: 'Bad mail'"_s));
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("parsing data: size: 86"_s, "Data successfully parsed."_s,
            "TuneInRequest::parseData: error: "_s + printed(error)));
}

TEST_F(TuneInRequestTest, AcceptsOnlyTheStatusText200)
{
    for (const char *status : {" 200", "200 ", "0200", "200.0", "201", "OK", "", "２００"}) {
        m_response = m_before;
        const QByteArray data = QByteArray(R"({"head":{"status":")") + status + R"("},"body":[]})";
        EXPECT_FALSE(parse(data).isEmpty()) << status;
        expectUntouched();
    }
    EXPECT_TRUE(parse(R"({"head":{"status":200}})").isEmpty()) << "a number reads as its text";
    EXPECT_TRUE(parse(R"({"head":{"status":"200"}})").isEmpty());
}

TEST_F(TuneInRequestTest, ReadsTheAccountOperationFromTheQuery)
{
    for (const char *operation :
        {"auth", "create", "join", "drop", "query", "remind", "reset", "claim"}) {
        log().clear();
        request("/Account.ashx?c="_s + QLatin1String(operation));
        EXPECT_TRUE(log().contains("TRACE Account operation: "_s + QLatin1String(operation)));
    }
}

TEST_F(TuneInRequestTest, TreatsAnUnknownAccountOperationAsNone)
{
    answerAll(QByteArray(R"({"head":{"status":"403"},"body":[]})"));
    for (const char *operation : {"dance", "Join", "3"}) {
        log().clear();
        EXPECT_EQ(request("/Account.ashx?c="_s + QLatin1String(operation)).message(),
            TrString("TuneIn", "Access forbidden."));
        EXPECT_THAT(log().lines("TRACE"_s).filter("Account operation"_s),
            ElementsAre("Account operation: none"_s))
            << operation;
        EXPECT_THAT(log().lines("WARN"_s), IsEmpty()) << operation;
    }
}

TEST_F(TuneInRequestTest, WarnsAboutAnAccountCallWithoutOperation)
{
    answerAll(Good);
    EXPECT_TRUE(request("/Account.ashx?serial=1"_s).isEmpty());
    EXPECT_THAT(log().lines("WARN"_s), ElementsAre("Unknown account operation."_s));
    expectRequests({"GET /Account.ashx?serial=1"});
}

TEST_F(TuneInRequestTest, RecognisesAccountCallsByTheEndOfThePathCaseSensitively)
{
    for (const char *target :
        {"/account.ashx?c=join", "/Account.ashx/x?c=join", "/Preset.ashx?c=join&x=Account.ashx"}) {
        log().clear();
        request(QLatin1String(target));
        EXPECT_EQ(log().lines("TRACE"_s).filter("Account operation"_s).size(), 0) << target;
        EXPECT_THAT(log().lines("WARN"_s), IsEmpty());
    }
    log().clear();
    request("/some/MyAccount.ashx?c=join"_s);
    EXPECT_TRUE(log().contains("TRACE Account operation: join"_s));
}

TEST_F(TuneInRequestTest, ResetsTheAccountOperationWithEachRequest)
{
    answerAll(QByteArray(R"({"head":{"status":"403"},"body":[]})"));
    QStringList messages;
    onWorker([&] {
        TuneInRequest request(worker());
        for (const char *target : {"/Account.ashx?c=join", "/Browse.ashx", "/Account.ashx?c=join",
                 "/Account.ashx", "/Account.ashx?c=auth"})
            messages += request.request(api(QLatin1String(target)), TuneInRequest::Post, m_response)
                            .message()
                            .toString();
    });
    const QString login = "Login failed. Please enter a valid username and password."_s;
    const QString forbidden = "Access forbidden."_s;
    EXPECT_EQ(messages, QStringList({login, forbidden, login, forbidden, forbidden}));
}

TEST_F(TuneInRequestTest, CallsTheOverridesOfASubclass)
{
    QStringList calls;
    std::unique_ptr<TuneInRequest> request = std::make_unique<SilentRequest>(worker(), calls);
    EXPECT_TRUE(request->request(api("/a"_s), TuneInRequest::Get, m_response).isEmpty());
    EXPECT_EQ(calls, QStringList("/a"_s));
    request.reset();
    EXPECT_EQ(calls, QStringList({"/a"_s, "end"_s}));
    expectUntouched();
    expectRequests({});
}

TEST_F(TuneInRequestTest, ReportsAnHtmlPageAsInvalidData)
{
    ScriptedServer::Response response;
    response.code = 403;
    response.body = "<html><body>403 Forbidden</body></html>";
    answerAll(response);
    expectStandardError(request("/a"_s), "Invalid data returned.");
}

TEST_F(TuneInRequestTest, SurvivesAnswersOfOddShapes)
{
    for (const char *body :
        {"[]", "null", "1", "\"200\"", "true", R"({"head":[]})", R"({"head":"200"})",
            R"({"head":{"status":["200"]}})", R"({"head":{"status":{"status":"200"}}})",
            R"({"head":{"status":null}})", R"([{"head":{"status":"200"}}])"}) {
        m_response = m_before;
        EXPECT_FALSE(parse(body).isEmpty()) << body;
        expectUntouched();
    }
}

TEST_F(TuneInRequestTest, ReportsEveryTruncatedAnswerAsInvalid)
{
    for (int size = 0; size < Good.size(); ++size)
        expectStandardError(parse(Good.left(size)),
            size == 0 ? "Invalid data received." : "Invalid data returned.");
}
