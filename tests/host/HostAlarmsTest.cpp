// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/HostProcess.h"

#include "ctl/RpcClient.h"
#include "tests/support/Ear.h"
#include "tests/support/Text.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <gmock/gmock.h>

#include <csignal>
#include <memory>

// Alarms of the host as a process. They are set for the next minute, in time zones that are so many
// seconds from UTC that it begins soon.

namespace {

class HostAlarms : public testing::Test {
protected:
    ~HostAlarms() override
    {
        if (m_zone.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", m_zone);
    }

    /// With clocks that are \a offset seconds ahead of UTC.
    void start(qint64 offset)
    {
        const qint64 size = std::abs(offset);
        qputenv("TZ",
            "TST" + QByteArray(offset < 0 ? "+" : "-") + QByteArray::number(size / 3600) + ':'
                + QByteArray::number(size / 60 % 60) + ':' + QByteArray::number(size % 60));
        host = std::make_unique<HostProcess>(text(HOST_PROGRAM),
            QStringList {text("--plugin"), text(TEST_PLUGINS "/libvesk_cb_good.so"),
                text("--state-dir"), m_folder.filePath(text("state")), text("--audio"),
                text("wav:") + wav()});
        ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    }
    /// The offset of clocks that show a whole minute in \a seconds.
    static qint64 offsetForMinuteIn(qint64 seconds)
    {
        return 60 - (QDateTime::currentSecsSinceEpoch() + seconds) % 60;
    }
    /// The next minute of those clocks, unless it is about to begin.
    static QString nextMinute(qint64 offset)
    {
        return QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch() + 60 + 3 + offset)
            .toUTC()
            .toString(text("hh:mm"));
    }
    QVariantHash call(const char *method, const QVariantHash &params = {})
    {
        const RpcAnswer answer = RpcClient(host->url()).call(text(method), params);
        EXPECT_EQ(answer.kind, RpcAnswer::Result) << method;
        return answer.result.toHash();
    }
    int state() { return call("player.state").value(text("state")).toInt(); }
    /// Until \a condition holds; two minutes at most.
    template <class Condition>
    static bool wait(Condition condition)
    {
        for (int i = 0; i < 1200; ++i) {
            if (condition())
                return true;
            QThread::msleep(100);
        }
        return false;
    }
    QString ringing() { return call("alarms.list").value(text("ringing")).toString(); }
    QString wav() const { return m_folder.filePath(text("alarm.wav")); }

    std::unique_ptr<HostProcess> host;

private:
    const QByteArray m_zone = qgetenv("TZ");
    const QTemporaryDir m_folder;
};

TEST_F(HostAlarms, AMutedHostRingsIsKilledRingsOnAndIsMutedAgain)
{
    const qint64 offset = offsetForMinuteIn(8);
    start(offset);
    call("player.volume", {{text("volume"), 30}, {text("mute"), true}});
    QString time;
    QVariantHash set;
    QVariantHash wanted {{text("volume"), 90}, {text("fade"), 0}};
    do { // again if the minute came too near meanwhile
        wanted.insert(text("time"), time = nextMinute(offset));
        set = call("alarms.set", wanted);
        wanted.insert(text("id"), set.value(text("id")));
    } while (nextMinute(offset) != time);
    EXPECT_TRUE(set.value(text("next")).toString().contains(QLatin1Char('T') + time + text(":00")))
        << set.value(text("next")).toString().toStdString();
    ASSERT_TRUE(wait([this] { return ringing() == text("1"); }));
    ASSERT_TRUE(wait([this] { return state() == 2; }));
    const QVariantHash loud = call("player.state");
    EXPECT_EQ(loud.value(text("title")).toString(), text("Alarm"));
    EXPECT_EQ(loud.value(text("volume")).toInt(), 90);
    EXPECT_FALSE(loud.value(text("mute")).toBool());
    // The volume is in the settings by then.
    QThread::sleep(2);
    host->signal(SIGKILL);
    host->waitForEnd();

    start(offset);
    ASSERT_TRUE(wait([this] { return ringing() == text("1"); }));
    ASSERT_TRUE(wait([this] { return state() == 2; }));
    EXPECT_EQ(call("player.state").value(text("volume")).toInt(), 90);
    // Two seconds of 48 kHz.
    ASSERT_TRUE(wait([this] { return QFileInfo(wav()).size() > 2 * 48000 * 4; }));
    call("alarms.stop");
    EXPECT_EQ(ringing(), QString());
    const QVariantHash quiet = call("player.state");
    EXPECT_EQ(quiet.value(text("state")).toInt(), 0);
    EXPECT_EQ(quiet.value(text("volume")).toInt(), 30);
    EXPECT_TRUE(quiet.value(text("mute")).toBool());
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0);

    QFile file(wav());
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const ear::Sound sound = ear::decoded(file.readAll().toStdString());
    EXPECT_GT(sound.seconds(), 1.5);
    EXPECT_GT(sound.loudness(), 0.003);
}

} // namespace
