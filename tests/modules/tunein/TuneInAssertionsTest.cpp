// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRequest.h"
#include "modules/tunein/TuneInBrowseNode.h"
#include "modules/tunein/TuneInContextNode.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "modules/tunein/TuneInRequest.h"
#include "tests/modules/tunein/TuneInFixture.h"

using testing::HasSubstr;

namespace {

/// What a failed assertion prints: the literal condition.
std::string assertion(const std::string &condition)
{
    return "Assertion failed: " + condition + ", file ";
}

/// Each statement runs in a process of its own.
class TuneInAssertionTest : public TuneInFixture {
protected:
    TuneInAssertionTest() { start(); }

    CMGetRowsRequest rowsRequest(const QString &text)
    {
        return CMGetRowsRequest(CMPath::fromEncoded(text), {"title"_s}, 0, 9,
            CMReply<QVariant>(std::make_shared<CMReplyData<QVariant>>()));
    }

    void showScreen(const QByteArray &elements, const QString &shown)
    {
        answerAll(screen(elements));
        rows(shown, {"title"_s});
    }
};

#define EXPECT_ASSERTION(statement, condition)                                                     \
    EXPECT_DEATH(statement, HasSubstr(assertion(condition)))

} // namespace

TEST_F(TuneInAssertionTest, StopsARequestWithoutWorker)
{
    EXPECT_ASSERTION(TuneInRequest(nullptr), "tiWorker != NULL");
}

TEST_F(TuneInAssertionTest, StopsNodesWithoutWorker)
{
    EXPECT_ASSERTION(TuneInBrowseNode::create(nullptr, path("TuneIn:x"_s)), "tiWorker");
    EXPECT_ASSERTION(
        TuneInPlayerContextNode::create(nullptr, path("TuneIn:x"_s), true), "tiWorker");
    EXPECT_ASSERTION(TuneInBrowserContextNode::create(nullptr, path("TuneIn:x"_s)), "tiWorker");
    EXPECT_ASSERTION(TuneInAddRemovePresetsNode::create(nullptr, path("TuneIn:x"_s)), "worker");
}

TEST_F(TuneInAssertionTest, StopsAnExchangeOfAnUnknownType)
{
    VeskTuneInResponse response;
    EXPECT_ASSERTION(onWorker([&] {
        TuneInRequest(worker()).request(VeskUrl("http://opml.radiotime.com/x"_s),
            static_cast<TuneInRequest::RequestType>(2), response);
    }),
        "0");
}

TEST_F(TuneInAssertionTest, StopsAnExchangeThatIsStartedOnTheClientsOwnThread)
{
    TuneInHttpClient *client = worker()->httpClient();
    const auto exchange
        = [client] { client->get(VeskUrl("http://opml.radiotime.com/x"_s), nullptr); };
    EXPECT_ASSERTION(QMetaObject::invokeMethod(client, exchange, Qt::BlockingQueuedConnection),
        "called on another thread than the client's own");
}

TEST_F(TuneInAssertionTest, StopsCallsOfTheWorkersThreadOnOtherThreads)
{
    const char condition[] = "called on the object's thread";
    TuneInBrowseNode *node = browseNode();
    EXPECT_ASSERTION(node->getRowsRequest(rowsRequest("TuneIn:browse"_s)), condition);
    EXPECT_ASSERTION(worker()->sendAutomaticStreamReport("s1"_s, {}, {}), condition);
    EXPECT_ASSERTION(worker()->sendDurationReport("s1"_s, 10, true), condition);
}

TEST_F(TuneInAssertionTest, StopsAStreamReportWithoutGuideIdAndUrl)
{
    EXPECT_ASSERTION(onWorker([&] { worker()->sendAutomaticStreamReport({}, {}, "broken"_s); }),
        "!guideId.isEmpty() || !streamUrl.isEmpty()");
}

TEST_F(TuneInAssertionTest, StopsADurationReportWithoutGuideId)
{
    EXPECT_ASSERTION(
        onWorker([&] { worker()->sendDurationReport({}, 10, true); }), "!guideId.isEmpty()");
}

TEST_F(TuneInAssertionTest, StopsAScreenThatIsNotBelowBrowse)
{
    TuneInBrowseNode *node = browseNode();
    EXPECT_ASSERTION(onWorker([&] { node->getRowsRequest(rowsRequest("TuneIn:other/browse"_s)); }),
        "requestPath.base().startsWith(\"browse\")");
}

TEST_F(TuneInAssertionTest, StopsASeparatorWithAReservedCharacterInItsKey)
{
    const char condition[] = "!element.key().contains(QRegExp(\"[_~]\"))";
    for (const char *key : {"a_b", "~1", "_"}) {
        const QByteArray element
            = QByteArray(R"({"element":"outline","text":"A","key":")") + key + R"("})";
        EXPECT_ASSERTION(showScreen(element, "TuneIn:browse/uri/x"_s), condition);
    }
}

TEST_F(TuneInAssertionTest, StopsAStreamChoiceWithoutMatchingPath)
{
    const QByteArray stream
        = R"({"element":"outline","type":"audio","text":"A","URL":"http://h/x"})";
    EXPECT_ASSERTION(
        showScreen(stream, "TuneIn:browse?veskTuneInMethod=tune&c=ebrowse&guideId=s1"_s),
        "!veskMatchingPath.isEmpty()");
}

TEST_F(TuneInAssertionTest, StopsAPresetWithoutGuideId)
{
    const QString entry = "TuneIn:browser_context/presets?veskMatchingPath=TuneIn%3Abrowse"_s;
    EXPECT_ASSERTION(data(entry, {"title"_s}), "!guideId.isEmpty()");
    EXPECT_ASSERTION(setData(entry, VeskRoles::Activate(), {}), "!guideId.isEmpty()");
}

TEST_F(TuneInAssertionTest, StopsAPresetWhoseMatchingPathIsEmpty)
{
    const QString entry = "TuneIn:browser_context/presets?veskMatchingPath="_s;
    EXPECT_ASSERTION(data(entry, {"title"_s}), "!guideId.isEmpty()");
    EXPECT_ASSERTION(setData(entry, VeskRoles::Activate(), {}), "!guideId.isEmpty()");
}
