// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInBrowseNode.h"
#include "tests/modules/tunein/RowsFixture.h"

#include <log4cplus/logger.h>

#include <algorithm>

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::Not;
using testing::SizeIs;

namespace {

const QByteArray Station
    = R"({"element":"outline","type":"audio","text":"Example FM","subtext":"All day","guide_id":"s1",)"
      R"("URL":"http://opml.radiotime.com/Tune.ashx?id=s1","genre_id":"g19","item":"station","image":"http://127.0.0.1/s1.png"})";
const QByteArray Episode
    = R"({"element":"outline","type":"audio","text":"Episode","guide_id":"t7","item":"topic",)"
      R"("URL":"http://opml.radiotime.com/Tune.ashx?id=t7&sid=p3"})";
const QByteArray Show
    = R"({"element":"outline","type":"link","text":"Show without sid","item":"show",)"
      R"("URL":"http://opml.radiotime.com/Browse.ashx?id=p3"})";
const QByteArray Settings
    = R"({"element":"outline","type":"link","text":"Settings","key":"settings",)"
      R"("URL":"http://opml.radiotime.com/Settings.aspx"})";
const QByteArray Unknown = R"({"element":"outline","type":"object","text":"?"})";

QByteArray section(const QByteArray &key, const QByteArray &children)
{
    return R"({"element":"outline","text":"Section","key":")" + key + R"(","children":[)" + children
        + "]}";
}

const QStringList Roles {"title"_s, "description"_s, "icon"_s, "type"_s, "audioType"_s, "path"_s,
    "context"_s, "mediaData"_s, "id"_s, "preferred"_s};

/// Screens as they are read while the log is not at its most detailed, which has every row built.
class TuneInRowsRangeTest : public TuneInRowsTest {
protected:
    TuneInRowsRangeTest()
    {
        log4cplus::Logger::getInstance("CB_TuneIn").setLogLevel(log4cplus::DEBUG_LOG_LEVEL);
        answer("/Describe.ashx",
            screen(R"({"element":"outline","type":"text","text":"Rock","guide_id":"g19"})"));
    }
    /// Elements of every kind, with lists in lists.
    static QByteArray everything()
    {
        return text("a") + "," + Show + "," + Settings + "," + Station + "," + Unknown + ","
            + section(
                "one", Station + "," + section("two", Episode + "," + text("b")) + "," + Settings)
            + "," + Episode + "," + section("three", "") + "," + Show + "," + text("c");
    }
    /// The rows of the screen, which the server answers with the elements.
    RowsAnswer open(const QByteArray &elements, int first, int last)
    {
        answer("/Browse.ashx", screen(elements));
        log().clear();
        return rows(screenPath(), Roles, first, last);
    }
    /// Compares every range with the part of the whole screen, with its log.
    void expectEveryRangeIsAPart(const QByteArray &elements)
    {
        open(elements, 0, 99); // fetches the genres
        const RowsAnswer whole = open(elements, 0, 99);
        const QStringList wholeLog = log().lines();
        ASSERT_GT(whole.count, 8);
        ASSERT_EQ(whole.rows.size(), whole.count);
        for (int first = -2; first <= whole.count; ++first) {
            for (int last = first - 1; last <= whole.count; ++last) {
                const RowsAnswer part = open(elements, first, last);
                EXPECT_EQ(part.count, whole.count);
                EXPECT_EQ(part.rows, whole.rows.mid(std::max(first, 0), last - first + 1))
                    << first << " to " << last;
                EXPECT_EQ(log().lines(), wholeLog) << first << " to " << last;
            }
        }
    }
};

} // namespace

TEST_F(TuneInRowsRangeTest, IsAPartOfTheWholeScreen)
{
    start();
    expectEveryRangeIsAPart(everything());
}

TEST_F(TuneInRowsRangeTest, IsAPartOfASingleListWithItsHeadings)
{
    singleList();
    start();
    expectEveryRangeIsAPart(everything());
}

TEST_F(TuneInRowsRangeTest, BuildsNothingBesides)
{
    start();
    const QByteArray elements = everything();
    answer("/Browse.ashx", screen(elements));
    const CMGetRowsRequest request(path(screenPath()), Roles, 2, 4,
        CMReply<QVariant>(std::make_shared<CMReplyData<QVariant>>()));
    QVariantList rows;
    onWorker([&] {
        rows = browseNode()->parseData(request, screen(elements),
            VeskUrl("http://opml.radiotime.com/Browse.ashx?c=x"_s), QString());
    });
    ASSERT_EQ(rows.size(), 9);
    for (int i = 0; i < rows.size(); ++i)
        EXPECT_EQ(rows.at(i).isNull(), i < 2 || i > 4) << i;
}

TEST_F(TuneInRowsRangeTest, SaysForEachStationThatThereAreNoGenres)
{
    answer("/Describe.ashx", QByteArray(R"({"head":{"status":"500"},"body":[]})"));
    start();
    const QByteArray elements = Station + "," + Station + "," + Episode + "," + Station;
    open(elements, 0, 0);
    const QStringList first = log().lines("ERROR"_s);
    EXPECT_EQ(first.filter("Failed to get genre name: "_s).size(), 1);
    EXPECT_EQ(first.filter("Request failed, try later."_s).size(), 2);
    open(elements, 2, 2);
    EXPECT_THAT(log().lines("ERROR"_s), AllOf(SizeIs(3), Each("Request failed, try later."_s)));
}

TEST_F(TuneInRowsRangeTest, FetchesTheGenresForAStationThatNobodyAskedFor)
{
    start();
    const QByteArray genres
        = "GET /Describe.ashx?c=genres&partnerId=partner&serial=ABC&render=json";
    const QByteArray elements = text("a") + "," + Station;
    answer("/Browse.ashx", screen(elements));
    rows(screenPath(), {"title"_s}, 0, 0);
    EXPECT_THAT(server().requestLines(), Not(Contains(genres)));
    rows(screenPath(), Roles, 0, 0);
    EXPECT_THAT(server().requestLines(), Contains(genres));
}
