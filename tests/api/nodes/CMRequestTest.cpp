// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRequest.h"
#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>
#include <QObject>

namespace {

const QStringList valueRole {VeskRoles::Value()};

/// Requests, and how often their handler was told that they are cancelled.
class CMRequestTest : public testing::Test {
protected:
    void tell(const CMRequest &request)
    {
        request.whenCancelled(&m_context, [this] { ++m_told; });
    }
    int told()
    {
        QCoreApplication::processEvents();
        return m_told;
    }

    Answer m_answer;
    QObject m_context;
    int m_told = 0;
};

TEST_F(CMRequestTest, TellsThatItsCallerHasCancelledIt)
{
    const CMReply<QVariant> reply = m_answer.reply();
    for (const CMRequest &request :
        std::vector<CMRequest> {CMGetDataRequest(path("W:x"), valueRole, reply),
            CMGetRowsRequest(path("W:x"), valueRole, 0, 9, reply),
            CMMatchRowRequest(path("W:x"), VeskRoles::Value(), 1, reply)}) {
        EXPECT_TRUE(request.onlyReads());
        EXPECT_FALSE(request.isCancelled());
        tell(request);
        tell(request);
    }
    EXPECT_EQ(told(), 0);
    m_answer.data()->setError(CMCancelledError());
    EXPECT_EQ(m_told, 0) << "through the event loop";
    EXPECT_EQ(told(), 6);
    const CMGetDataRequest request(path("W:x"), valueRole, reply);
    EXPECT_TRUE(request.isCancelled());
    tell(request);
    EXPECT_EQ(told(), 7) << "cancelled already";
    EXPECT_EQ(told(), 7) << "once";
}

TEST_F(CMRequestTest, IsNotCancelledByAnAnswer)
{
    const CMGetDataRequest good(path("W:x"), valueRole, m_answer.reply());
    tell(good);
    good.reply().setValue(1);
    m_answer.data()->setError(CMCancelledError());
    EXPECT_FALSE(good.isCancelled());
    tell(good);
    const Answer failing;
    const CMGetDataRequest bad(path("W:x"), valueRole, failing.reply());
    tell(bad);
    bad.reply().setError(CMNoNodeError());
    EXPECT_FALSE(bad.isCancelled());
    EXPECT_EQ(told(), 0);
}

TEST_F(CMRequestTest, AChangeIsNeverCancelled)
{
    const CMSetDataRequest request(path("W:x"), VeskRoles::Value(), 1, m_answer.reply());
    EXPECT_FALSE(request.onlyReads());
    tell(request);
    m_answer.data()->setError(CMCancelledError());
    EXPECT_FALSE(request.isCancelled());
    EXPECT_EQ(told(), 0);
}

TEST_F(CMRequestTest, NobodyIsToldWithoutAContextOrAReply)
{
    auto context = std::make_unique<QObject>();
    const CMGetDataRequest request(path("W:x"), valueRole, m_answer.reply());
    request.whenCancelled(context.get(), [this] { ++m_told; });
    context.reset();
    m_answer.data()->setError(CMCancelledError());
    tell(CMGetDataRequest(path("W:x"), valueRole, {}));
    tell(CMRequest());
    EXPECT_FALSE(CMRequest().isCancelled());
    EXPECT_EQ(told(), 0);
}

} // namespace
