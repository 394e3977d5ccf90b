// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/NewQThread.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

TEST(TuneInTimeoutTest, EndsAnUnansweredExchangeAfterThirtySeconds)
{
    TuneInHost host;
    ScriptedServer::Response response;
    response.end = ScriptedServer::End::StallBeforeHead;
    host.answerAll(response);
    WorkerThread thread([] { return createInNewQThread<TuneInHttpClient>("TuneInHttp"_s); });
    QElapsedTimer elapsed;
    elapsed.start();
    QByteArray out("untouched");
    const CMError error = static_cast<TuneInHttpClient *>(thread.object())
                              ->get(VeskUrl("http://opml.radiotime.com/x"_s), &out);
    EXPECT_EQ(error.message().sourceText(), "Failed to connect to TuneIn"_s);
    EXPECT_EQ(out, QByteArray("untouched"));
    EXPECT_GE(elapsed.elapsed(), 29900);
    EXPECT_LT(elapsed.elapsed(), 35000);
}
