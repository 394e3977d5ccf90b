// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPath.h"
#include "tests/support/Ear.h"
#include "tests/support/Text.h"
#include "tests/system/FavoritesFixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class MenuSystem : public FavoritesFixture { };

class ChosenStream : public FavoritesFixture {
protected:
    ChosenStream()
        : FavoritesFixture({text("--audio"), text("wav:%1/out.wav")})
    {
    }
    QVariantHash state()
    {
        return product.rpc(text("player.state"), {}).value(text("result")).toHash();
    }
    /// Plays a row and waits until it plays.
    bool play(const QString &screen, int row)
    {
        const QVariant playId
            = product.rpc(text("player.play"), {{text("screen"), screen}, {text("row"), row}})
                  .value(text("result"))
                  .toHash()
                  .value(text("playId"));
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 20000) {
            const QVariantHash now = state();
            if (now.value(text("state")).toInt() == 2 && now.value(text("playId")) == playId)
                return true;
            QThread::msleep(25);
        }
        return false;
    }
    QString entry(int row)
    {
        return menu(state().value(text("contextPath")).toString()).value(row).path;
    }
    std::vector<double> melody(const QVariantHash &stream)
    {
        std::vector<double> notes;
        const QVariantList values = stream.value(text("notes")).toList();
        for (const QVariant &note : values)
            notes.push_back(note.toDouble());
        return notes;
    }
};

TEST_F(ChosenStream, TheSecondOfThreePlaysUnderItsStationsTitle)
{
    const QString screen = text("TuneIn:browse/uri/Search.ashx?query=liffey%20lights");
    const Item item = items(screen).value(0);
    const QVariantList streams
        = product.directory(text("/_tunes?id=") + item.guideId).value(text("streams")).toList();
    ASSERT_EQ(streams.size(), 3);
    ASSERT_TRUE(play(screen, 0));
    const QVariantHash first = state();
    EXPECT_EQ(first.value(text("title")).toString(), item.title);
    const QList<Entry> entries = menu(first.value(text("contextPath")).toString());
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries.value(1).title, text("Choose stream"));
    const QVariantList choices = product.rows(entries.value(1).path, {text("type")});
    ASSERT_EQ(choices.size(), 3);
    for (const QVariant &choice : choices)
        EXPECT_EQ(choice.toList().value(0).toInt(), 3);
    product.newRequests();

    ASSERT_TRUE(play(entries.value(1).path, 1));
    QThread::sleep(4);
    const QVariantHash second = state();
    for (const char *role : {"title", "description", "icon"})
        EXPECT_EQ(second.value(text(role)).toString(), first.value(text(role)).toString()) << role;
    EXPECT_FALSE(second.value(text("title")).toString().isEmpty());
    EXPECT_FALSE(second.value(text("icon")).toString().isEmpty());
    EXPECT_NE(second.value(text("uri")), first.value(text("uri")));
    product.rpc(text("player.stop"), {});
    ASSERT_TRUE(product.waitForRequests(text("Report.ashx?c=time"), 1));

    QFile file(folder.filePath(text("out.wav")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const ear::Sound sound = ear::decoded(file.readAll().toStdString());
    EXPECT_NEAR(sound.seconds(), 4, 1.5);
    EXPECT_TRUE(ear::isPartOf(sound.notes(), melody(streams.value(1).toHash()), 5));
    EXPECT_FALSE(ear::isPartOf(sound.notes(), melody(streams.value(0).toHash()), 5));

    const QStringList reports = product.newRequests().filter(text("Report.ashx?c=stream"));
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first().startsWith(
        text("GET /Report.ashx?c=stream&id=") + item.guideId + text("&streamUrl=")));
}

/// The menu of a chosen stream is opened with the stream's id but applies to its station.
TEST_F(ChosenStream, HasAContextMenuLikeItsStation)
{
    const QString screen = text("TuneIn:browse/uri/Search.ashx?query=trial%2001");
    ASSERT_TRUE(play(screen, 0));
    ASSERT_TRUE(play(entry(1), 1));
    const QString chosen = state().value(text("contextPath")).toString();
    EXPECT_EQ(CMPath::fromEncoded(chosen).param(text("guideId")), text("e290012"));
    EXPECT_EQ(product.rows(entry(1), {text("title")}).size(), 8);
    EXPECT_EQ(product.rows(entry(2), {text("title")}).size(), 4);
    addAndRemove(chosen, "s29001", "Trial 01 Every Codec");
    ASSERT_TRUE(play(entry(1), 2));
    ASSERT_TRUE(product.waitForRequests(text("GET /stream/s29001/3.ogg"), 1));
}

TEST_F(MenuSystem, TheProblemReportOpensUpToItsLastPage)
{
    const Item item = station();
    const Entry wizard = menu(item.playerMenu).value(2);
    EXPECT_EQ(wizard.title, text("Report a problem"));
    requests();
    const QList<Entry> questions = menu(wizard.path);
    const std::string formats = (text("&formats=") + text(AllFormats)).toStdString();
    EXPECT_THAT(requests(),
        ElementsAre("GET /Report.ashx?c=wizard&id=s29001&render=json" + formats
            + device.toStdString() + "&locale=en-US"));
    ASSERT_EQ(questions.size(), 4);
    EXPECT_EQ(questions.value(0).title, text("There is no sound"));
    for (const Entry &question : questions) {
        requests();
        const QList<Entry> last = menu(question.path);
        ASSERT_EQ(last.size(), 1);
        EXPECT_EQ(last.value(0).title, text("Thank you. We will look into it."));
        EXPECT_EQ(last.value(0).path, QString());
        EXPECT_THAT(requests(), ElementsAre(HasSubstr("GET /Report.ashx?c=wizard&")));
    }
    product.setFault("reset@Report.ashx");
    EXPECT_TRUE(
        product.rpc(text("getRows"), {{text("path"), wizard.path}}).contains(text("error")));
    product.clearFaults();
    EXPECT_EQ(menu(wizard.path).size(), 4);
}

} // namespace
