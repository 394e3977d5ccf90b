// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskPlayLogicData.h"
#include "tests/modules/radiobrowser/RadioBrowserFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char Click[] = "GET /json/url/00000000-0000-4000-8000-000000000001";

/// A player that reports what it does with a station that was listed.
class RadioBrowserClicksTest : public RadioBrowserFixture {
protected:
    RadioBrowserClicksTest()
        : m_server(radioBrowserAnswer({radioBrowserStation(1)}))
    {
        start(addressOf(m_server));
        m_row = rows(text("RadioBrowser:stations")).rows.value(0);
        m_server.clearRequests();
    }

    void report(VeskPlayLogicState::Enum state, const char *play, const VeskRoles &row)
    {
        VeskHash playId;
        playId.insert(text("id"), text(play));
        VeskPlayLogicData data;
        data.setState(state);
        data.setPlayId(playId);
        data.setTrackRoles(row);
        const CMPath path = m_row.mediaData().metaData().playbackStateChangePath();
        EXPECT_TRUE(setData(path, VeskRoles::Activate(), data.toHash()).isEmpty());
    }
    void report(VeskPlayLogicState::Enum state, const char *play) { report(state, play, m_row); }

    /// Once what was asked for before has arrived: requests come in their order.
    QList<QByteArray> clicks()
    {
        rows(text("RadioBrowser:codecs"));
        // A click has a connection of its own.
        m_server.waitForRequests(m_expected + 1);
        QList<QByteArray> lines = m_server.requestLines();
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                        [](const QByteArray &line) { return line.contains("/json/codecs"); }),
            lines.end());
        return lines;
    }

    ScriptedServer m_server;
    VeskRoles m_row;
    int m_expected = 0;
};

} // namespace

TEST_F(RadioBrowserClicksTest, CountsAPlayOnceWhenItIsHeard)
{
    m_expected = 1;
    report(VeskPlayLogicState::transitioning, "play 1");
    report(VeskPlayLogicState::playing, "play 1");
    report(VeskPlayLogicState::paused, "play 1");
    report(VeskPlayLogicState::playing, "play 1");
    report(VeskPlayLogicState::stopped, "play 1");
    EXPECT_THAT(clicks(), ElementsAre(Click));
}

TEST_F(RadioBrowserClicksTest, CountsEachPlay)
{
    m_expected = 2;
    report(VeskPlayLogicState::playing, "play 1");
    report(VeskPlayLogicState::stopped, "play 1");
    report(VeskPlayLogicState::playing, "play 2");
    EXPECT_THAT(clicks(), ElementsAre(Click, Click));
}

TEST_F(RadioBrowserClicksTest, CountsNoBrowsingAndNoPlayThatWasNotHeard)
{
    rows(text("RadioBrowser:stations?order=votes"));
    report(VeskPlayLogicState::transitioning, "play 1");
    report(VeskPlayLogicState::stopped, "play 1");
    for (const QByteArray &line : clicks())
        EXPECT_FALSE(line.contains("/json/url/")) << line.toStdString();
}

TEST_F(RadioBrowserClicksTest, CountsNothingForARowThatIsNoStation)
{
    for (const char *path : {"RadioBrowser:station", "RadioBrowser:station?station=..%2Fservers",
             "RadioBrowser:stations?station=00000000-0000-4000-8000-000000000001", ""}) {
        VeskRoles row;
        row.setPath(CMPath::fromEncoded(text(path)));
        report(VeskPlayLogicState::playing, path, row);
    }
    EXPECT_THAT(clicks(), IsEmpty());
}

TEST_F(RadioBrowserClicksTest, AnswersThePlayerBeforeTheDirectoryDoes)
{
    m_server.setHandler([](const ScriptedServer::Request &) {
        ScriptedServer::Response response;
        response.end = ScriptedServer::End::StallBeforeHead;
        return response;
    });
    // The fixture's deadline is far longer than this, which nothing here waits for.
    report(VeskPlayLogicState::playing, "play 1");
    ASSERT_TRUE(m_server.waitForRequests(1));
    report(VeskPlayLogicState::stopped, "play 1");
    EXPECT_EQ(m_server.requestLines(), QList<QByteArray>({Click}));
}
