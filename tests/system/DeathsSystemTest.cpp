// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPath.h"
#include "api/web/VeskJson.h"
#include "tests/support/RawWebSocket.h"
#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QThread>

#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <csignal>
#include <functional>
#include <limits>
#include <mutex>
#include <thread>

namespace {

constexpr char Interrupted[] = "The TuneIn service was interrupted. Please try again.";
constexpr char MusicScreen[] = "TuneIn:browse/uri/Browse.ashx?c=music";

/// The path of a favorites entry for an item without a guide id.
QString entryOfNothing()
{
    return CMPath(text("TuneIn"), text("browser_context/presets"),
        {{text("veskMatchingPath"), text("TuneIn:browse")}})
        .toEncoded();
}

/// Decoded silence stays below this amplitude.
constexpr float Inaudible = 0.001F;

double longestSilence(const ear::Sound &sound)
{
    std::size_t longest = 0;
    std::size_t length = 0;
    for (const float sample : sound.samples) {
        length = std::abs(sample) < Inaudible ? length + 1 : 0;
        longest = std::max(longest, length);
    }
    return static_cast<double>(longest) / ear::Sound::Rate;
}

/// Repeats an action on a thread of its own until destroyed.
class Meanwhile {
public:
    explicit Meanwhile(std::function<void()> action)
        : m_thread([this, action = std::move(action)] {
            while (!m_stop) {
                action();
                QThread::msleep(10);
            }
        })
    {
    }
    ~Meanwhile()
    {
        m_stop = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_stop {false};
    std::thread m_thread;
};

/// The responses to a browsing client, by kind.
struct Answers {
    int withRows = 0;
    int interruptions = 0;
    QStringList others;
    qint64 slowestMs = 0;

    void add(const QVariantHash &answer, qint64 milliseconds)
    {
        const QString error
            = answer.value(text("error")).toHash().value(text("message")).toString();
        const QVariantHash result = answer.value(text("result")).toHash();
        if (error == text(Interrupted))
            ++interruptions;
        else if (error.isEmpty() && !result.value(text("rows")).toList().isEmpty())
            ++withRows;
        else
            others.append(QString::fromUtf8(VeskJson::write(answer)));
        slowestMs = std::max(slowestMs, milliseconds);
    }
};

class DeathsSystem : public PlayFixture {
protected:
    /// A way to end the plug-in's process, after which the log contains \a logged.
    struct Death {
        const char *name;
        std::function<void()> strike;
        const char *logged;
    };

    DeathsSystem()
        : PlayFixture({text("--restart-wait"), text("0.25"), text("--log-level"), text("info"),
            text("--log-file"), text("%1/log")})
    {
    }

    /// The process of the plug-in; 0 while there is none.
    pid_t worker() const
    {
        const QByteArray host = QByteArray::number(product.host().processId());
        const QList<QByteArray> children
            = contents(QString::fromLatin1("/proc/" + host + "/task/" + host + "/children"))
                  .split(' ');
        for (const QByteArray &child : children) {
            const QByteArray command = contents(QString::fromLatin1("/proc/" + child + "/cmdline"));
            if (!child.isEmpty() && command.split('\0').first().endsWith("vesk-plugin"))
                return static_cast<pid_t>(child.toInt());
        }
        return 0;
    }
    /// The process that replaces \a former; 0 if none does.
    pid_t nextWorker(pid_t former) const
    {
        const QDeadlineTimer deadline(20000);
        pid_t now = worker();
        while ((now == 0 || now == former) && !deadline.hasExpired()) {
            QThread::usleep(500);
            now = worker();
        }
        return now == former ? 0 : now;
    }
    bool waitForRows() const
    {
        const QDeadlineTimer deadline(20000);
        while (product.rows(text("TuneIn:"), {text("title")}).isEmpty()) {
            if (deadline.hasExpired())
                return false;
            QThread::msleep(PollMs);
        }
        return true;
    }
    void signal(int number) const
    {
        const pid_t process = worker();
        ASSERT_GT(process, 0);
        ::kill(process, number);
    }

    /// Searches for a row that the directory returns this once; the response.
    QVariantHash findOnce(const char *row)
    {
        const QString name = folder.filePath(text("found.json"));
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("{\"head\":{\"status\":\"200\"},\"body\":[" + QByteArray(row) + "]}");
        file.close();
        product.setFault("body@Search.ashx:" + name.toUtf8() + "*1");
        return product.rpc(text("getRows"),
            {{text("path"), text("TuneIn:browse/uri/Search.ashx?query=odd")},
                {text("roles"), QStringList {text("title"), text("context")}}});
    }
    static void expectInterruption(const QVariantHash &answer)
    {
        EXPECT_EQ(answer.value(text("error")).toHash().value(text("message")).toString(),
            text(Interrupted))
            << VeskJson::write(answer).constData();
    }
    /// Opens the context menu of a station without a guide id.
    void openMenuOfNothing()
    {
        const QVariantHash found
            = findOnce("{\"element\":\"outline\",\"type\":\"audio\",\"text\":\"Nameless\","
                       "\"URL\":\"http://opml.radiotime.com/Tune.ashx?id=s1\"}");
        const QVariantList rows = found.value(text("result")).toHash().value(text("rows")).toList();
        const QVariantHash menu = rows.value(0).toList().value(1).toHash();
        ASSERT_FALSE(menu.isEmpty()) << VeskJson::write(found).constData();
        expectInterruption(
            product.rpc(text("getRows"), {{text("path"), menu.value(text("path"))}}));
    }

    /// Deaths by the system, by answers of the directory and by requests of a client.
    std::vector<Death> deaths()
    {
        const auto ask = [this](const char *method, const QString &path, QVariantHash params = {}) {
            params.insert(text("path"), path);
            expectInterruption(product.rpc(text(method), params));
        };
        return {
            {"killed", [this] { signal(SIGKILL); }, "signal 9 (Killed)"},
            // A crash by a signal that no sanitizer handles.
            {"illegal instruction", [this] { signal(SIGILL); }, "signal 4 (Illegal instruction)"},
            {"stopped", [this] { signal(SIGSTOP); }, "somebody stopped it: signal 9 (Killed)"},
            {"a section's key with an underscore",
                [this] {
                    expectInterruption(findOnce("{\"element\":\"outline\",\"text\":\"Section\","
                                                "\"key\":\"a_b\",\"children\":[]}"));
                },
                "!element.key().contains(QRegExp("},
            {"a station without an id", [this] { openMenuOfNothing(); }, "!guideId.isEmpty()"},
            {"a choice of streams of nothing",
                [ask] {
                    ask("getRows",
                        text("TuneIn:browse?c=ebrowse&guideId=s29001&veskTuneInMethod=tune"));
                },
                "!veskMatchingPath.isEmpty()"},
            {"the title of a menu of nothing",
                [ask] {
                    ask("getData", entryOfNothing(),
                        {{text("roles"), QStringList {text("title")}}});
                },
                "!guideId.isEmpty()"},
            {"a menu of nothing",
                [ask] {
                    ask("setData", entryOfNothing(),
                        {{text("role"), text("activate")}, {text("value"), QVariant()}});
                },
                "!guideId.isEmpty()"},
        };
    }

    /// The log's lines about ends of the plug-in's processes.
    QStringList endings() const
    {
        return QString::fromUtf8(contents(folder.filePath(text("log"))))
            .split(QLatin1Char('\n'))
            .filter(QRegularExpression(text("the plug-in process of .* ended: ")));
    }
    /// The seconds of each duration report.
    QList<int> durations() const
    {
        QList<int> seconds;
        for (const QString &report : requests("Report.ashx?c=time"))
            seconds.append(
                report.section(text("&duration="), 1).section(QLatin1Char('&'), 0, 0).toInt());
        return seconds;
    }
    bool waitForStreamReports(int count) const
    {
        return product.waitForRequests(text("Report.ashx?c=stream"), count);
    }
    void startPlaying()
    {
        begun.start();
        play(text("trial%2001"));
        ASSERT_TRUE(waitForState(2));
        clock.start();
        ASSERT_TRUE(waitForStreamReports(1));
    }
    static double secondsOf(const QElapsedTimer &timer)
    {
        return static_cast<double>(timer.elapsed()) / 1000;
    }

    QElapsedTimer begun; ///< before the station plays
    QElapsedTimer clock; ///< since it is known to play
};

bool waitForReset(RawWebSocket &socket)
{
    for (;;) {
        const RawWebSocket::Frame frame = socket.receive();
        if (frame.opcode == RawWebSocket::Ping) {
            socket.send(RawWebSocket::Pong, frame.payload);
            continue;
        }
        if (frame.opcode != RawWebSocket::Text)
            return false;
        if (frame.payload.contains("\"changed\"") && frame.payload.contains("\"rowsReset\""))
            return true;
    }
}

int rounds()
{
    bool isNumber = false;
    const int given = qEnvironmentVariableIntValue("VESK_DEATHS", &isNumber);
    return isNumber ? given : 8;
}

TEST_F(DeathsSystem, ThePluginsProcessIsReplacedWhileTheMusicPlays)
{
    startPlaying();
    const qint64 host = product.host().processId();
    RawWebSocket socket(product.hostPort());
    ASSERT_TRUE(socket
                    .ask("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"subscribe\","
                         "\"params\":{\"path\":\"TuneIn:browse\"}}")
                    .contains("\"result\""));

    const std::vector<Death> ways = deaths();
    Answers answers;
    QStringList breaks;
    Footprint before;
    qint64 quickest = std::numeric_limits<qint64>::max();
    QElapsedTimer sinceLastDeath;
    for (int round = 0; round < rounds(); ++round) {
        const Death &death = ways[static_cast<std::size_t>(round) % ways.size()];
        SCOPED_TRACE(death.name);
        const pid_t former = worker();
        QElapsedTimer sinceDeath;
        {
            const Meanwhile browsing([&] {
                QElapsedTimer asked;
                asked.start();
                const QVariantHash answer = product.rpc(text("getRows"),
                    {{text("path"), text(MusicScreen)},
                        {text("roles"), QStringList {text("title")}}});
                answers.add(answer, asked.elapsed());
            });
            const Meanwhile watching([&] {
                const QVariantHash now = state();
                if (now.value(text("state")).toInt() != 2)
                    breaks.append(QString::fromUtf8(VeskJson::write(now)));
            });
            QThread::msleep(100);
            sinceDeath.start();
            sinceLastDeath.start();
            death.strike();
            ASSERT_GT(nextWorker(former), 0);
            ASSERT_TRUE(waitForRows());
            const qint64 away = sinceDeath.elapsed();
            if (round == 0)
                RecordProperty("millisecondsAfterTheFirst", static_cast<int>(away));
            quickest = std::min(quickest, away);
            ASSERT_TRUE(waitForReset(socket));
        }
        ASSERT_TRUE(waitForStreamReports(round + 2)) << "the next one is told that it plays";
        const QStringList logged = endings();
        ASSERT_EQ(logged.size(), round + 1);
        EXPECT_THAT(logged.last().toStdString(), testing::HasSubstr(death.logged));
        if (round == 0)
            before = Footprint::of(host);
    }
    EXPECT_EQ(product.host().processId(), host);
    EXPECT_EQ(product.host().state(), QProcess::Running);
    EXPECT_EQ(breaks, QStringList());
    EXPECT_EQ(answers.others, QStringList());
    // The machine may stand still in some rounds, but not in each.
    EXPECT_LE(quickest, 1000);
    EXPECT_GT(answers.withRows, rounds());
    RecordProperty("interruptions", answers.interruptions);
    RecordProperty("slowestAnswerMs", static_cast<int>(answers.slowestMs));

    const Footprint after = Footprint::settled(host, before);
    EXPECT_LE(after.threads, before.threads);
    EXPECT_LE(after.descriptors, before.descriptors);
    RecordProperty("kilobytesBefore", before.kilobytes);
    RecordProperty("kilobytesAfter", after.kilobytes);

    // The last report covers the listening time since the last replacement.
    QElapsedTimer sinceTold;
    sinceTold.start();
    QThread::sleep(3);
    const double least = secondsOf(clock);
    const double leastTold = secondsOf(sinceTold);
    command("player.stop");
    const double most = secondsOf(begun);
    ASSERT_TRUE(product.waitForRequests(text("Report.ashx?c=time"), 1));
    ASSERT_EQ(durations().size(), 1);
    EXPECT_GE(durations().first(), leastTold - 1.5);
    EXPECT_LE(durations().first(), secondsOf(sinceLastDeath));
    EXPECT_EQ(requests("Report.ashx?c=stream").size(), rounds() + 1);

    const ear::Sound sound = heard();
    EXPECT_EQ(sound.error, "");
    EXPECT_GE(sound.seconds(), least - 1.5);
    EXPECT_LE(sound.seconds(), most + 1.5);
    EXPECT_LT(longestSilence(sound), 0.1);
    EXPECT_TRUE(ear::isPartOf(sound.notes(), melody(text("s29001")), 6));
    EXPECT_EQ(requests("/stream/").size(), 1) << "the stream goes on, it is not opened anew";
}

/// Commands of a listener around the replacement of the process: before its death, before the next
/// one has loaded the plug-in, and right after; and how many duration reports follow.
struct Meddling {
    const char *name;
    std::vector<const char *> before; ///< the death
    std::vector<const char *> away;
    std::vector<const char *> after;
    int reports;
};

const Meddling meddlings[] = {
    {"pause_while_it_is_away", {}, {"player.pause"}, {"player.resume", "player.stop"}, 1},
    {"pause_and_resume_while_it_is_away", {}, {"player.pause", "player.resume"}, {"player.stop"},
        1},
    {"stop_while_it_is_away", {}, {"player.stop"}, {}, 0},
    {"pause_and_stop_while_it_is_away", {}, {"player.pause", "player.stop"}, {}, 0},
    {"pause_before", {"player.pause"}, {}, {"player.resume", "player.stop"}, 1},
    {"pause_before_and_stop", {"player.pause"}, {}, {"player.stop"}, 0},
    {"pause_right_after", {}, {}, {"player.pause", "player.stop"}, 0},
    {"stop_right_after", {}, {}, {"player.stop"}, 0},
};

void PrintTo(const Meddling &meddling, std::ostream *out)
{
    *out << meddling.name;
}

class DeathsSystemReports : public DeathsSystem, public testing::WithParamInterface<Meddling> { };

TEST_P(DeathsSystemReports, NeverExceedTheTimeHeard)
{
    const Meddling &meddling = GetParam();
    startPlaying();
    QThread::msleep(1200);
    for (const char *each : meddling.before)
        command(each);
    const pid_t former = worker();
    signal(SIGKILL);
    const pid_t next = nextWorker(former);
    ASSERT_GT(next, 0);
    if (!meddling.away.empty()) {
        // Keeps the next process from loading the plug-in until the commands are done.
        ::kill(next, SIGSTOP);
        for (const char *each : meddling.away)
            command(each);
        ::kill(next, SIGCONT);
    }
    ASSERT_TRUE(waitForRows());
    const bool isLong = meddling.reports > 0;
    for (const char *each : meddling.after) {
        if (isLong && each == std::string("player.stop")) {
            EXPECT_TRUE(waitForState(2));
            QThread::msleep(2200);
        }
        command(each);
    }
    if (isLong) {
        ASSERT_TRUE(product.waitForRequests(text("Report.ashx?c=time"), meddling.reports));
    }
    // After a normal end every report has been sent.
    EXPECT_EQ(product.stopHost(), 0);
    const QList<int> reported = durations();
    EXPECT_EQ(reported.size(), meddling.reports);
    int sum = 0;
    for (const int each : reported)
        sum += each;
    EXPECT_LE(sum, heard().seconds());
    EXPECT_GE(sum, isLong ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Player, DeathsSystemReports, testing::ValuesIn(meddlings),
    [](const testing::TestParamInfo<Meddling> &instance) { return instance.param.name; });

} // namespace
