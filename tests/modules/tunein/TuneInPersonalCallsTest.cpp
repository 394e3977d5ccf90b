// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/NewQThread.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/WorkerThread.h"

#include <gtest/gtest.h>

namespace {

/// A client of a server whose responses all stay fresh for a minute.
class TuneInPersonalCalls : public testing::TestWithParam<const char *>, protected TuneInHost {
protected:
    TuneInPersonalCalls()
    {
        server().setHandler([this](const ScriptedServer::Request &) {
            ScriptedServer::Response response;
            response.body = QByteArray::number(server().requests().size());
            response.headers = {{"Cache-Control", "max-age=60"}};
            return response;
        });
    }

    QByteArray get(const QString &target)
    {
        QByteArray out;
        auto *client = static_cast<TuneInHttpClient *>(m_thread.object());
        EXPECT_TRUE(client->get(VeskUrl("http://opml.radiotime.com"_s + target), &out).isEmpty());
        return out;
    }

private:
    WorkerThread m_thread {[] { return createInNewQThread<TuneInHttpClient>("TuneInHttp"_s); }};
};

class TuneInOtherCalls : public TuneInPersonalCalls { };

TEST_P(TuneInPersonalCalls, BypassTheCache)
{
    const QString target = QString::fromLatin1(GetParam());
    EXPECT_EQ(get(target), "1");
    EXPECT_EQ(get(target), "2");
    EXPECT_EQ(get(target), "3");
}

INSTANTIATE_TEST_SUITE_P(Urls, TuneInPersonalCalls,
    testing::Values("/Preset.ashx?c=add&id=s1&serial=1", "/Preset.ashx?c=remove&id=s1",
        "/Report.ashx?c=stream&id=s1&listenId=1&error=404", "/Account.ashx?c=query",
        "/Describe.ashx?id=s1", "/Browse.ashx?c=presets",
        "/Browse.ashx?formats=mp3&c=presets&id=f1"));

TEST_P(TuneInOtherCalls, AreCachedWhileTheyAreFresh)
{
    const QString target = QString::fromLatin1(GetParam());
    EXPECT_EQ(get(target), "1");
    EXPECT_EQ(get(target), "1");
    EXPECT_EQ(server().requests().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Urls, TuneInOtherCalls,
    testing::Values("/Browse.ashx", "/Browse.ashx?c=music", "/Browse.ashx?id=presets",
        "/Describe.ashx?c=genres", "/Search.ashx?query=Preset.ashx", "/Tune.ashx?c=presets"));

} // namespace
