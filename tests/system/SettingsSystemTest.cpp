// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// A setting that the plug-in reads once is changed while a station plays.
#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char Formats[] = "settings:tunein/supportedStreams";

class SettingsSystem : public PlayFixture {
protected:
    Outcome set(const char *path, const char *value) const
    {
        return product.ctl({text("set"), text(path), text(value)});
    }
    std::string lastRequest(const char *page) const { return requests(page).last().toStdString(); }
};

TEST_F(SettingsSystem, AChangeAppliesToTheNextListWhileTheMusicPlays)
{
    play(text("trial%2001"));
    ASSERT_TRUE(waitForState(2));
    const QVariant playId = state().value(text("playId"));
    const int reports = requests("Report.ashx").size();
    ASSERT_EQ(set(Formats, "ogg").code, 0);
    ASSERT_EQ(product.ctl({text("ls"), text("TuneIn:browse/uri/Browse.ashx?c=music")}).code, 0);
    EXPECT_THAT(lastRequest("Browse.ashx"), HasSubstr("formats=ogg&"));
    const Watched after = watch(1500);
    EXPECT_EQ(after.lastState, 2);
    EXPECT_EQ(after.longestBreakMs, 0) << "nothing was to be heard of it";
    EXPECT_EQ(after.error, QString());
    EXPECT_EQ(state().value(text("playId")), playId);
    EXPECT_TRUE(isHeard());

    // The new process knows what plays: it reports the stream and its duration.
    EXPECT_TRUE(product.waitForRequests(text("Report.ashx?c=stream"), reports + 1));
    command("player.stop");
    EXPECT_TRUE(product.waitForRequests(text("Report.ashx?c=time"), 1));
}

TEST_F(SettingsSystem, ARefusedValueChangesNothing)
{
    ASSERT_EQ(product.ctl({text("ls")}).code, 0);
    const Outcome refused = set(Formats, "mp3,mp5");
    EXPECT_EQ(refused.code, 1);
    EXPECT_THAT(refused.err.toStdString(),
        HasSubstr("The setting \"Stream formats to ask TuneIn for\" cannot be \"mp3,mp5\": it is "
                  "formats separated by commas"));
    ASSERT_EQ(product.ctl({text("ls"), text("TuneIn:browse/uri/Browse.ashx?c=talk")}).code, 0);
    EXPECT_THAT(lastRequest("Browse.ashx"), Not(HasSubstr("mp5")));
}

/// A request that is under way when the setting changes is answered, with the old value or the
/// new one.
TEST_F(SettingsSystem, RequestsUnderWayAreAnswered)
{
    product.setFault("slow-headers@Browse.ashx:2");
    QProcess ls;
    ls.start(QStringLiteral(VESK_BIN_DIR "/veskctl"),
        {text("--host"), product.hostUrl(), text("ls"),
            text("TuneIn:browse/uri/Browse.ashx?c=music")});
    ASSERT_TRUE(product.waitForRequests(text("c=music"), 1));
    product.clearFaults();
    ASSERT_EQ(set(Formats, "mp3").code, 0);
    EXPECT_TRUE(ls.waitForFinished(20000));
    EXPECT_EQ(ls.exitCode(), 0) << ls.readAllStandardError().toStdString();
    EXPECT_FALSE(ls.readAllStandardOutput().isEmpty());
}

} // namespace
