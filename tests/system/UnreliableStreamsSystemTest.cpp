// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QElapsedTimer>
#include <QThread>
#include <QUrl>

namespace {

QStringList hostsOfTheDirectory()
{
    return runProgram(text("tunein-directory"), {text("--list-hosts")})
        .out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// As ./run starts the host.
QStringList connectedToTheDirectory()
{
    QStringList arguments;
    for (const QString &host : hostsOfTheDirectory())
        arguments += {text("--connect-to"), host + text(":%directory")};
    return arguments;
}

class UnreliableStreamsSystem : public PlayFixture {
protected:
    UnreliableStreamsSystem()
        : PlayFixture(connectedToTheDirectory())
    {
    }
    void playRow(const char *title) const
    {
        const QString screen = text("TuneIn:testing/unreliableStreams");
        const QVariantList rows = product.rows(screen, {text("title")});
        for (int i = 0; i < rows.size(); ++i) {
            if (rows.at(i).toList().first().toString() != text(title))
                continue;
            const QVariantHash answer
                = product.rpc(text("player.play"), {{text("screen"), screen}, {text("row"), i}});
            EXPECT_TRUE(answer.contains(text("result")));
            return;
        }
        FAIL() << title << " is not listed";
    }
    /// Waits for an error or a problem of the player; empty after ten seconds.
    QString told() const
    {
        QElapsedTimer clock;
        for (clock.start(); clock.elapsed() < 10000; QThread::msleep(PollMs)) {
            for (const char *name : {"problem", "error"}) {
                const QString said = state().value(text(name)).toString();
                if (!said.isEmpty())
                    return said;
            }
        }
        return {};
    }
};

TEST_F(UnreliableStreamsSystem, AllAreServedByTheDirectory)
{
    const QStringList hosts = hostsOfTheDirectory();
    EXPECT_EQ(hosts.size(), 16);
    const QVariantList rows
        = product.rows(text("TuneIn:testing/unreliableStreams"), {text("mediaData")});
    ASSERT_EQ(rows.size(), 16);
    for (const QVariant &row : rows) {
        const QVariantHash media = row.toList().first().toHash();
        const QUrl url(media.value(text("resources"))
                           .toList()
                           .value(0)
                           .toHash()
                           .value(text("uri"))
                           .toString());
        EXPECT_TRUE(hosts.contains(text("%1:%2").arg(url.host(), QString::number(url.port(80)))))
            << url.toString().toStdString();
    }
}

TEST_F(UnreliableStreamsSystem, SilentStreamsAreReported)
{
    const struct {
        const char *title;
        const char *told;
    } cases[] {
        {"Radio Hinterland", "The connection to the stream was lost. Trying again in 1 s."},
        {"Copper Kettle Folk", "The stream's server refused it (code 404)."},
        {"Mistral Info", "The stream's server refused it (code 503). Trying again in 5 s."},
        {"Static and Stars", "The stream cannot be decoded. Trying again in 1 s."},
        {"Seven Hills Talk", "There is a web page in place of the stream."},
        {"Paper Lantern", "The stream leads from address to address."},
        {"Late Ferry", "The stream's server sends nothing. Trying again in 1 s."},
    };
    for (const auto &each : cases) {
        // What it tells first is only told until the next try: again if the machine stood still.
        QString said;
        for (int tries = 0; tries < 5 && said != text(each.told); ++tries) {
            playRow(each.title);
            said = told();
        }
        EXPECT_EQ(said, text(each.told)) << each.title;
    }
}

TEST_F(UnreliableStreamsSystem, AStreamThatKeepsEndingKeepsPlaying)
{
    playRow("Night Owl Jazz");
    ASSERT_TRUE(waitForState(2));
    // Three connections of five seconds.
    const Watched watched = watch(14000);
    EXPECT_EQ(watched.error, QString());
    EXPECT_EQ(watched.lastState, 2);
    EXPECT_LE(watched.longestBreakMs, 1000);
}

} // namespace
