// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskPlayLogicData.h"
#include "tests/modules/radiobrowser/RadioBrowserFixture.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace {

/// The plug-in against the program that stands in for Radio Browser.
class RadioBrowserDirectoryTest : public RadioBrowserFixture {
protected:
    ~RadioBrowserDirectoryTest() override
    {
        stop();
        m_program.terminate();
        EXPECT_TRUE(m_program.waitForFinished());
        EXPECT_EQ(m_program.exitCode(), 0);
    }

    void run(const QStringList &arguments = {})
    {
        m_program.start(text(RADIOBROWSER_DIRECTORY),
            QStringList {text("--port"), text("0"), text("--request-log"), logFile()} + arguments);
        QByteArray line;
        while (!line.endsWith('\n') && m_program.waitForReadyRead())
            line += m_program.readAllStandardOutput();
        const QByteArray ready = "radiobrowser-directory: ready at ";
        ASSERT_TRUE(line.startsWith(ready)) << line.toStdString();
        start(QString::fromLatin1(line.mid(ready.size()).trimmed()));
    }

    QString logFile() const { return m_folder.filePath(text("requests")); }
    QByteArray log() const
    {
        QFile file(logFile());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

private:
    QTemporaryDir m_folder;
    QProcess m_program;
};

} // namespace

TEST_F(RadioBrowserDirectoryTest, LeadsFromACountryToItsStations)
{
    run();
    const RadioBrowserRows countries = rows(text("RadioBrowser:countries"));
    EXPECT_EQ(countries.count, 19);
    const int germany = countries.titles().indexOf(text("Germany"));
    ASSERT_GE(germany, 0);
    EXPECT_EQ(countries.rows.at(germany).description().toString(), text("9 stations"));
    const RadioBrowserRows stations = rows(countries.rows.at(germany).path().toEncoded());
    EXPECT_EQ(stations.count, 9);
    for (const VeskRoles &station : stations.rows) {
        EXPECT_TRUE(station.mediaData().activeResource().uri().startsWith(
            text("http://127.0.0.1:8074/stream/")))
            << station;
        EXPECT_TRUE(station.description().toString().contains(text("Germany"))) << station;
    }
}

TEST_F(RadioBrowserDirectoryTest, HidesBrokenStations)
{
    run();
    EXPECT_EQ(rows(text("RadioBrowser:stations?order=votes")).count, 58);
}

TEST_F(RadioBrowserDirectoryTest, FindsAStationByAPartOfItsName)
{
    run();
    const RadioBrowserRows found = rows(text("RadioBrowser:stations?name=CLIFTON"));
    EXPECT_EQ(found.titles(), QStringList(text("Clifton Strings")));
}

TEST_F(RadioBrowserDirectoryTest, ReadsALongListToItsEnd)
{
    run({text("--stations"), text("1200")});
    QStringList titles;
    for (int count = 1; titles.size() < count;) {
        const RadioBrowserRows range
            = rows(text("RadioBrowser:stations"), titles.size(), titles.size() + 499);
        ASSERT_FALSE(range.rows.isEmpty());
        count = range.count;
        titles += range.titles();
    }
    // Two of the sixty that the others are modelled on are broken.
    EXPECT_EQ(titles.size(), 1160);
    EXPECT_EQ(titles.removeDuplicates(), 0);
}

TEST_F(RadioBrowserDirectoryTest, CountsWhatIsPlayed)
{
    run();
    const VeskRoles row = rows(text("RadioBrowser:stations?name=CLIFTON")).rows.value(0);
    VeskHash playId;
    playId.insert(text("id"), 1);
    VeskPlayLogicData data;
    data.setState(VeskPlayLogicState::playing);
    data.setPlayId(playId);
    data.setTrackRoles(row);
    setData(
        row.mediaData().metaData().playbackStateChangePath(), VeskRoles::Activate(), data.toHash());
    EXPECT_TRUE(spinUntil([this] {
        return log().count("GET /json/url/b0a00002-0000-4000-8000-000000000002\n") == 1;
    }));
}
