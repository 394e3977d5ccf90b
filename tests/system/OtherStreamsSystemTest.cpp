// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QElapsedTimer>
#include <QThread>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class OtherStreamsSystem : public PlayFixture {
protected:
    QString member(const char *name) const { return state().value(text(name)).toString(); }
    /// Waits until the plug-in has handled every state posted so far, reports included: it handles
    /// requests in order.
    void settle() { product.rows(text("TuneIn:"), {text("title")}); }
    /// The rows of the stream choice of the playing station.
    QString choiceOfStreams() const
    {
        const QVariantList menu = product.rows(member("contextPath"), {text("path")});
        return menu.value(1).toList().value(0).toString();
    }
    bool playRow(const QString &screen, int row) const
    {
        return product.rpc(text("player.play"), {{text("screen"), screen}, {text("row"), row}})
            .contains(text("result"));
    }
};

TEST_F(OtherStreamsSystem, AStationWhoseFirstStreamIsDeadPlaysWithinFiveSeconds)
{
    for (const char *number : {"05", "06"}) {
        qint64 took = 0;
        bool said = false;
        // A machine that stands still in one try does not count.
        for (int tries = 0; tries < 3 && (tries == 0 || took > 5000 || !said); ++tries) {
            if (tries > 0) {
                command("player.stop");
                settle();
                product.newRequests();
            }
            said = false;
            QElapsedTimer clock;
            clock.start();
            play(text("trial%20") + text(number));
            while (state().value(text("state")).toInt() != 2 && clock.elapsed() < 20000) {
                said |= member("problem") == text("Trying another stream ...");
                EXPECT_EQ(member("error"), QString());
                QThread::msleep(PollMs);
            }
            took = clock.elapsed();
        }
        EXPECT_LE(took, 5000) << number;
        EXPECT_TRUE(said) << number;
        EXPECT_EQ(member("problem"), QString());
        EXPECT_EQ(state().value(text("bitrate")).toInt(), 96000) << number;
        EXPECT_TRUE(isHeard()) << number;
        command("player.stop");
        settle();
        const QStringList reports = product.newRequests().filter(text("Report.ashx?c=stream"));
        ASSERT_EQ(reports.size(), 1) << number;
        EXPECT_THAT(reports.first().toStdString(), HasSubstr("&id=s290" + std::string(number)));
        EXPECT_FALSE(reports.first().contains(text("&error=")));
    }
}

TEST_F(OtherStreamsSystem, AStationWithoutAStreamThatPlaysIsReportedOnce)
{
    play(text("trial%2017"));
    ASSERT_TRUE(waitForState(0, 90000));
    EXPECT_EQ(member("error"), text("The stream's server refused it (code 404)."));
    settle();
    const QStringList reports = requests("Report.ashx");
    ASSERT_EQ(reports.size(), 1);
    EXPECT_THAT(reports.first().toStdString(), HasSubstr("&error=404&message=The%20stream"));
}

TEST_F(OtherStreamsSystem, AChosenStreamIsPreferredTheNextTime)
{
    play(text("trial%2016"));
    ASSERT_TRUE(waitForState(2));
    const QString byItself = member("uri");
    const QString choice = choiceOfStreams();
    ASSERT_EQ(product.rows(choice, {text("title")}).size(), 2);
    command("player.stop");
    ASSERT_TRUE(playRow(choice, 1));
    ASSERT_TRUE(waitForState(2));
    const QString chosen = member("uri");
    EXPECT_NE(chosen, byItself);
    command("player.stop");

    ASSERT_EQ(product.stopHost(), 0);
    ASSERT_TRUE(product.startHost());
    play(text("trial%2016"));
    ASSERT_TRUE(waitForState(2));
    EXPECT_EQ(member("uri"), chosen);
    EXPECT_THAT(member("title").toStdString(), HasSubstr("Trial 16"));
}

TEST_F(OtherStreamsSystem, TheReasonOfAnUnavailableStationIsShown)
{
    const QString screen = text("TuneIn:browse/uri/Search.ashx?query=grand%20bleu");
    const QVariantList rows = product.rows(screen, {text("type"), text("description")});
    int row = 0;
    while (row < rows.size() && rows.at(row).toList().value(0).toInt() != 3)
        ++row;
    ASSERT_LT(row, rows.size());
    product.newRequests();
    ASSERT_TRUE(playRow(screen, row));
    ASSERT_TRUE(waitForState(0));
    EXPECT_EQ(member("error"), text("Not available in your country"));
    settle();
    const QStringList made = product.newRequests();
    EXPECT_THAT(made.filter(text("Report.ashx")), testing::IsEmpty());
    EXPECT_THAT(made.filter(text("/service/Audio/")), testing::IsEmpty());
}

TEST_F(OtherStreamsSystem, AFailedPrePlayIsReportedAsSuch)
{
    product.setFault("head-fault@Tune.ashx:404");
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(0));
    EXPECT_EQ(member("error"), text("TuneIn request failed."));
    settle();
    EXPECT_THAT(requests("Report.ashx"), testing::IsEmpty());
}

TEST_F(OtherStreamsSystem, ReportsAreInEnglish)
{
    product.rpc(text("setData"),
        {{text("path"), text("settings:ui/language")}, {text("role"), text("value")},
            {text("value"), text("de-DE")}});
    play(text("trial%2013"));
    ASSERT_TRUE(product.waitForRequests(text("Report.ashx"), 1, 45000));
    EXPECT_EQ(member("error"), text("Statt des Streams kam eine Webseite."));
    EXPECT_THAT(requests("Report.ashx").first().toStdString(),
        HasSubstr("&message=There%20is%20a%20web%20page%20in%20place%20of%20the%20stream."));
}

} // namespace
