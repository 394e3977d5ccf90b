// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/SupervisedPlugin.h"

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "tests/api/nodes/TestNodes.h"
#include "tests/support/LogCapture.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <vector>

namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

const QStringList valueRole {VeskRoles::Value()};

/// Keeps its requests unanswered until answerAll().
class HoldingWorker : public CMAbstractWorker {
public:
    ~HoldingWorker() override { m_root.removeWorker(this); }
    explicit HoldingWorker(CMRootWorker &root)
        : m_root(root)
    {
        m_root.addWorker(QStringLiteral("Held"), this);
    }

    void request(CMRequest request) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requests.push_back(std::move(request));
    }

    void answerAll()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const CMRequest &request : m_requests)
            request.reply().setValue(1);
        m_requests.clear();
    }

private:
    CMRootWorker &m_root;
    std::mutex m_mutex;
    /// Guarded by m_mutex.
    std::vector<CMRequest> m_requests;
};

/// Supervises a process of fake_plugin, whose file name ("mode") selects how it starts.
class SupervisedPluginTest : public testing::Test {
protected:
    SupervisedPluginTest() { m_options.program = QStringLiteral(FAKE_PLUGIN); }

    ~SupervisedPluginTest() override
    {
        m_plugin.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void make(const char *mode)
    {
        const QString file = m_folder.filePath(QString::fromLatin1(mode) + QStringLiteral(".so"));
        m_options.start = [file] {
            StartMessage message;
            message.file = file;
            return message;
        };
        m_plugin = std::make_unique<SupervisedPlugin>(file, m_options);
        QObject::connect(m_plugin.get(), &Plugin::loadFinished, [this] { ++m_loadFinished; });
        QObject::connect(m_plugin.get(), &Plugin::unloaded, [this] { ++m_unloaded; });
        QObject::connect(m_plugin.get(), &SupervisedPlugin::restarted, [this] { ++m_restarted; });
        QObject::connect(m_plugin.get(), &SupervisedPlugin::restarting, [this] { ++m_restarting; });
    }

    void load(const char *mode)
    {
        make(mode);
        m_plugin->load();
        ASSERT_TRUE(spinUntil([this] { return m_loadFinished > 0; }));
    }

    void loadGood(const char *mode = "good")
    {
        load(mode);
        ASSERT_EQ(m_plugin->error(), QString());
        ASSERT_EQ(m_plugin->root(), path("Fake:"));
    }

    /// Loads a plug-in that has read the setting "a" when it was 1.
    void loadKeeping()
    {
        loadGood();
        ASSERT_TRUE(ask("Fake:kept").spin());
        QCoreApplication::processEvents();
    }
    void change(int value = 2)
    {
        m_plugin->readSettings().noteChanged(path("settings:a"), VeskValue::fromInt(value));
    }

    /// Expects that loading fails without another attempt; returns the error.
    std::string whyNot(const char *mode)
    {
        load(mode);
        EXPECT_TRUE(m_plugin->root().isEmpty());
        EXPECT_TRUE(spinUntil([this] { return !m_plugin->isRunning(); }));
        EXPECT_EQ(runs(), 1);
        EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Fake")));
        EXPECT_TRUE(getData(m_root, path("Fake:value"), valueRole).isError());
        return m_plugin->error().toStdString();
    }

    Answer ask(const char *what) { return getData(m_root, path(what), valueRole); }

    /// The id of the process that serves requests now.
    pid_t process()
    {
        const Answer answer = ask("Fake:value");
        EXPECT_TRUE(answer.spin());
        EXPECT_FALSE(answer.isError()) << answer.errorText().toStdString();
        return answer.list().value(0).toInt();
    }

    static void expectInterrupted(const Answer &answer)
    {
        ASSERT_TRUE(answer.spin());
        EXPECT_EQ(answer.errorText(),
            QStringLiteral("The Fake service was interrupted. Please try again."));
        EXPECT_EQ(answer.errorName(), QStringLiteral("host:interrupted"));
    }

    static bool isGone(pid_t process) { return ::kill(process, 0) != 0 && errno == ESRCH; }

    /// How many processes have been started.
    int runs() const
    {
        return static_cast<int>(QFile(m_folder.filePath(QStringLiteral("runs"))).size());
    }

    bool spinUntilLogged(const char *part)
    {
        return spinUntil([&] { return logged().contains(QString::fromUtf8(part)); });
    }
    QString logged() const { return m_log.lines().join(QLatin1Char('\n')); }

    /// Has the plug-in process commit \a misdeed, a path; expects that the host ends it, logs
    /// \a reason and starts another.
    void expectRestart(const char *misdeed, const char *reason);

    const LogCapture m_log {"Host"};
    const QTemporaryDir m_folder;
    CMRootWorker m_root;
    PluginProcessOptions m_options;
    std::unique_ptr<SupervisedPlugin> m_plugin;
    int m_loadFinished = 0;
    int m_unloaded = 0;
    int m_restarted = 0;
    int m_restarting = 0;
};

void SupervisedPluginTest::expectRestart(const char *misdeed, const char *reason)
{
    loadGood();
    const pid_t former = process();
    QObject context;
    std::vector<CMChange> changes;
    const auto subscription = m_root.subscribe(
        path("Fake:list"), &context, [&](const CMChange &change) { changes.push_back(change); });
    const Answer pending = ask("Fake:silent");
    const Answer trigger
        = getData(m_root, CMPath::fromEncoded(QString::fromLatin1(misdeed)), valueRole);
    expectInterrupted(pending);
    ASSERT_TRUE(trigger.spin());
    EXPECT_TRUE(m_root.prefixes().contains(QStringLiteral("Fake")));

    ASSERT_TRUE(spinUntil([this] { return m_restarted == 1; }));
    EXPECT_TRUE(isGone(former));
    EXPECT_EQ(runs(), 2);
    EXPECT_THAT(logged().toStdString(), HasSubstr(reason));
    EXPECT_NE(process(), former);
    const Answer foreign = ask("player:fake/x");
    const Answer watched = ask("Fake:watched");
    ASSERT_TRUE(spinUntil([&] { return !changes.empty(); }));
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[0].path, path("Fake:list"));
    EXPECT_EQ(changes[0].kind, CMSubscribe::RowsChangeReset());
    ASSERT_TRUE(watched.spin());
    EXPECT_EQ(watched.list().value(0).toStringList(), QStringList(QStringLiteral("Fake:list")))
        << "the new process knows who watches";
    EXPECT_FALSE(foreign.isThere()) << "its other routes are there: that one is never answered";
    EXPECT_EQ(m_loadFinished, 1);
    EXPECT_EQ(m_unloaded, 0);
    EXPECT_TRUE(m_plugin->serves(path("Fake:x")));
    EXPECT_TRUE(m_plugin->serves(path("player:fake/x")));
    EXPECT_FALSE(m_plugin->serves(path("player:other")));
}

// Loading.

TEST_F(SupervisedPluginTest, ReportsWhyThePluginWasNotLoaded)
{
    EXPECT_EQ(whyNot("failing"), "no licence");
}

TEST_F(SupervisedPluginTest, DoesNotLoadAPluginWithoutRoot)
{
    EXPECT_EQ(whyNot("noroot"), "no root");
}

TEST_F(SupervisedPluginTest, DoesNotLoadAfterGarbage)
{
    EXPECT_THAT(whyNot("garbage"), HasSubstr("a message of kind 238 out of place"));
}

TEST_F(SupervisedPluginTest, DoesNotLoadAfterAnEmptyFrame)
{
    EXPECT_THAT(whyNot("empty"), HasSubstr("a message of kind 0 out of place"));
}

TEST_F(SupervisedPluginTest, DoesNotLoadAfterALengthBeyondTheLimit)
{
    EXPECT_THAT(whyNot("oversized"), HasSubstr("a message of 4294967295 bytes"));
}

TEST_F(SupervisedPluginTest, DoesNotLoadWithoutHello)
{
    EXPECT_THAT(whyNot("early"), HasSubstr("out of place"));
}

TEST_F(SupervisedPluginTest, DoesNotLoadFromAnotherProgram)
{
    EXPECT_THAT(whyNot("magic"), HasSubstr("another program or version"));
}

TEST_F(SupervisedPluginTest, DoesNotLoadFromAnotherVersion)
{
    EXPECT_THAT(whyNot("version"), HasSubstr("another program or version"));
}

TEST_F(SupervisedPluginTest, ReportsAnExitWhileLoading)
{
    EXPECT_THAT(whyNot("exits"), HasSubstr("exit status 7; its last line: my last words"));
}

TEST_F(SupervisedPluginTest, ReportsACrashWhileLoading)
{
    EXPECT_THAT(whyNot("segfaults"), HasSubstr("signal 11 (Segmentation fault)"));
}

TEST_F(SupervisedPluginTest, ReportsAnAbortWhileLoading)
{
    EXPECT_THAT(whyNot("aborts"), HasSubstr("signal 6 (Aborted); its last line: it was too much"));
}

TEST_F(SupervisedPluginTest, ReportsAMissingProgram)
{
    m_options.program = m_folder.filePath(QStringLiteral("missing"));
    load("good");
    EXPECT_TRUE(m_plugin->root().isEmpty());
    EXPECT_THAT(m_plugin->error().toStdString(), HasSubstr("missing"));
    EXPECT_FALSE(m_plugin->isRunning());
}

// Running.

TEST_F(SupervisedPluginTest, RequestsGoInBothDirections)
{
    loadGood();
    CMValuesWorker values;
    values.define(path("S:a"), VeskValue::fromInt(42));
    m_root.addWorker(QStringLiteral("S"), &values);
    const Answer good = ask("Fake:ask?path=S%3Aa");
    const Answer bad = ask("Fake:ask?path=Nobody%3Ax");
    ASSERT_TRUE(good.spin() && bad.spin());
    EXPECT_EQ(VeskValue(good.list().value(0).toHash()).int_(), 42);
    EXPECT_EQ(bad.errorName(), CMError::NoNodeName());
    m_root.removeWorker(&values);
}

/// A store that only counts what reaches it.
class CountingStore : public PluginStoreAccess {
public:
    const CMPath &path() const override { return m_path; }
    QVariantHash config() const override { return {}; }
    void whenSettled(QObject *context, std::function<void()> function) override
    {
        QTimer::singleShot(0, context, std::move(function));
    }
    void request(const CMRequest &request) override
    {
        ++requests;
        request.reply().setValue(requests);
    }

    int requests = 0;

private:
    const CMPath m_path = ::path("store:own");
};

TEST_F(SupervisedPluginTest, AProcessReachesNoStoreButItsOwn)
{
    HoldingWorker held(m_root); // nothing at the root answers either
    m_root.addWorker(PluginStoreAccess::prefix(), &held);
    CountingStore store;
    make("good");
    m_plugin->setStore(&store);
    m_plugin->load();
    ASSERT_TRUE(spinUntil([this] { return m_loadFinished > 0; }));
    const auto send = [this](const char *what, const QVariant &value) {
        const Answer answer = setData(m_root, path(what), VeskRoles::Value(), value);
        EXPECT_TRUE(answer.spin());
        return answer;
    };
    EXPECT_FALSE(send("Fake:ask?path=store%3Aown", 1).isError());
    EXPECT_FALSE(send("Fake:ask?path=store%3Aown", QByteArray(1 << 20, 'x')).isError())
        << "on the link's own thread";
    for (const char *other : {"Fake:ask?path=store%3Aother", "Fake:ask?path=store%3Aown%2Fx",
             "Fake:ask?path=store%3A", "Fake:ask?path=store%3Aown%3Fa%3Db"})
        EXPECT_EQ(send(other, 1).errorName(), CMError::NoNodeName()) << other;
    EXPECT_EQ(store.requests, 2);
    m_plugin.reset();
}

TEST_F(SupervisedPluginTest, AProcessWithoutAStoreReachesNone)
{
    HoldingWorker held(m_root);
    m_root.addWorker(PluginStoreAccess::prefix(), &held);
    loadGood();
    const Answer answer
        = setData(m_root, path("Fake:ask?path=store%3Afake"), VeskRoles::Value(), QVariantHash());
    ASSERT_TRUE(answer.spin());
    EXPECT_EQ(answer.errorName(), CMError::NoNodeName());
}

TEST_F(SupervisedPluginTest, SendsValuesToTheProcess)
{
    loadGood();
    const VeskValue value = VeskValue::fromInt(9);
    m_plugin->tell(ValueMessage {path("S:a"), value.toHash(), false, TrString()});
    const Answer told = ask("Fake:told");
    ASSERT_TRUE(told.spin());
    EXPECT_EQ(told.list().value(0), QVariant(value.toHash()));
}

TEST_F(SupervisedPluginTest, OutputGoesToTheLogWithoutControlCharacters)
{
    const LogCapture lines("LinesOfPlugins");
    loadGood();
    ASSERT_TRUE(ask("Fake:print").spin());
    const QString last = QStringLiteral("not ended, and an error");
    ASSERT_TRUE(spinUntil([&] { return lines.lines(QStringLiteral("INFO")).contains(last); }));
    const QStringList printed = lines.lines(QStringLiteral("INFO"));
    EXPECT_TRUE(printed.contains(QStringLiteral("?[2Jclear?tab???return")));
    EXPECT_TRUE(printed.contains(QStringLiteral("after")));
    int letters = 0;
    for (const QString &line : printed) {
        EXPECT_LE(line.size(), PluginOutput::MaxLine) << line.left(20).toStdString();
        EXPECT_FALSE(line.isEmpty());
        letters += line.startsWith(QLatin1Char('l')) ? line.count(QLatin1Char('l')) : 0;
    }
    EXPECT_EQ(letters, 50'000) << "nothing is lost where a line is split";
}

TEST_F(SupervisedPluginTest, RestartsAfterGarbage)
{
    expectRestart("Fake:garbage", "a message of kind 238 out of place");
}

TEST_F(SupervisedPluginTest, RestartsAfterALengthBeyondTheLimit)
{
    expectRestart("Fake:oversized", "a message of 2147483647 bytes");
}

TEST_F(SupervisedPluginTest, RestartsAfterAResponseWithoutARequest)
{
    expectRestart("Fake:unasked", "a response without a request");
}

TEST_F(SupervisedPluginTest, RestartsAfterASecondResponse)
{
    expectRestart("Fake:twice", "a response without a request");
}

TEST_F(SupervisedPluginTest, RestartsAfterAMessageThatCannotBeDecoded)
{
    expectRestart("Fake:unreadable", "a message of kind 6 that cannot be read");
}

TEST_F(SupervisedPluginTest, RestartsAfterASecondHello)
{
    expectRestart("Fake:hello", "a message of kind 1 out of place");
}

TEST_F(SupervisedPluginTest, RestartsAfterASecondLoaded)
{
    expectRestart("Fake:loaded", "a message of kind 3 out of place");
}

TEST_F(SupervisedPluginTest, RestartsAfterARouteToNowhere)
{
    expectRestart("Fake:nowhere", "a route to nowhere");
}

TEST_F(SupervisedPluginTest, RestartsAfterACrash)
{
    expectRestart("Fake:crash", "signal 11 (Segmentation fault)");
}

TEST_F(SupervisedPluginTest, RestartsAfterAnAbort)
{
    expectRestart("Fake:abort", "signal 6 (Aborted); its last line: it was too much");
}

TEST_F(SupervisedPluginTest, RestartsAfterAnExit)
{
    expectRestart("Fake:exit", "exit status 7; its last line: my last words");
}

TEST_F(SupervisedPluginTest, RestartsAfterTheConnectionIsClosed)
{
    expectRestart("Fake:hangup", "signal 9 (Killed)");
}

TEST_F(SupervisedPluginTest, RestartsAStoppedProcess)
{
    expectRestart("Fake:stop", "somebody stopped it");
}

TEST_F(SupervisedPluginTest, RestartsAfterTooManyRequests)
{
    HoldingWorker holding(m_root);
    expectRestart("Fake:requests", "more than 1024 requests at a time");
    holding.answerAll(); // the process that sent them is gone
    process();
    EXPECT_EQ(runs(), 2);
}

TEST_F(SupervisedPluginTest, RestartsAfterTooManyRoutes)
{
    expectRestart("Fake:routes", "more than 1024 routes");
}

TEST_F(SupervisedPluginTest, RestartsAfterTooManySubscriptions)
{
    expectRestart("Fake:watches", "more than 16384 subscriptions");
}

TEST_F(SupervisedPluginTest, RestartsAProcessThatOwesAResponseForTooLong)
{
    // Longer than the process, or this thread, may stand still when it is to answer.
    m_options.patience = milliseconds(5000);
    QElapsedTimer elapsed;
    elapsed.start();
    expectRestart("Fake:silent", "no answer within ");
    EXPECT_GE(elapsed.elapsed(), 5000);
}

TEST_F(SupervisedPluginTest, AProcessThatOwesNothingIsNotKilled)
{
    m_options.patience = milliseconds(5000); // in which it does answer, also if it stands still
    loadGood();
    const pid_t former = process();
    ASSERT_EQ(::kill(former, SIGSTOP), 0); // no request is pending
    QElapsedTimer elapsed;
    elapsed.start();
    ASSERT_TRUE(
        spinUntil([&] { return elapsed.hasExpired(7500); }, 20000)); // two checks after that
    ASSERT_EQ(::kill(former, SIGCONT), 0);
    EXPECT_EQ(process(), former);
    EXPECT_EQ(runs(), 1);
}

/// Counts the timers that expire on the calling thread.
class TimerCount : public QObject {
public:
    TimerCount() { QCoreApplication::instance()->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        count += event->type() == QEvent::Timer && qobject_cast<QTimer *>(receiver) ? 1 : 0;
        return false;
    }
};

TEST_F(SupervisedPluginTest, TheTimerRunsOnlyWhileResponsesAreOwed)
{
    loadGood();
    process();
    const auto turn = [](milliseconds time) {
        QElapsedTimer elapsed;
        elapsed.start();
        while (!elapsed.hasExpired(time.count())) {
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
        QCoreApplication::processEvents(); // what was due meanwhile, if this thread stood still
    };
    turn(milliseconds(1500)); // the check that follows the response
    TimerCount idle;
    turn(milliseconds(2500));
    EXPECT_EQ(idle.count, 0);
    // A pending request starts the checks again.
    const Answer owed = ask("Fake:silent");
    turn(milliseconds(2500));
    EXPECT_GE(idle.count, 1);
}

// Restarting.

TEST_F(SupervisedPluginTest, RequestsWaitForTheNextProcess)
{
    loadGood("slow");
    const pid_t former = process();
    expectInterrupted(ask("Fake:crash"));
    ASSERT_TRUE(spinUntilLogged("starting the plug-in process of"));
    const Answer waiting = ask("Fake:value");
    std::vector<Answer> more;
    for (int i = 1; i < RemoteWorker::MaxHeld; ++i)
        more.push_back(ask("Fake:value"));
    for (const Answer &answer : more)
        EXPECT_FALSE(answer.isThere());
    expectInterrupted(ask("Fake:value")); // the queue is full

    QFile go(m_folder.filePath(QStringLiteral("go")));
    ASSERT_TRUE(go.open(QIODevice::WriteOnly));
    ASSERT_TRUE(waiting.spin());
    EXPECT_FALSE(waiting.isError());
    EXPECT_NE(waiting.list().value(0).toInt(), former);
    EXPECT_EQ(waiting.list().value(1).toInt(), 2);
    for (const Answer &answer : more) {
        ASSERT_TRUE(answer.spin());
        EXPECT_FALSE(answer.isError());
    }
}

TEST_F(SupervisedPluginTest, RequestsWaitDuringAShortWait)
{
    loadGood("fails2");
    std::optional<Answer> waiting;
    QObject::connect(m_plugin.get(), &SupervisedPlugin::restarting, m_plugin.get(), [&] {
        if (m_restarting != 2)
            return;
        // The very beginning of the wait, which is short.
        EXPECT_TRUE(logged().contains(QStringLiteral("starting again in 250 ms")));
        EXPECT_FALSE(m_plugin->isRunning());
        waiting.emplace(ask("Fake:value"));
        EXPECT_FALSE(waiting->isThere());
    });
    expectInterrupted(ask("Fake:crash"));
    ASSERT_TRUE(spinUntil([&] { return waiting.has_value(); }));
    EXPECT_EQ(m_restarting, 2) << "once for each process that ended";
    ASSERT_TRUE(waiting->spin());
    EXPECT_EQ(waiting->list().value(1).toInt(), 3);
    EXPECT_EQ(m_restarted, 1);
    EXPECT_EQ(m_restarting, 2) << "what waits is not to be forgotten";
}

TEST_F(SupervisedPluginTest, APluginThatLoadedOnceIsTriedAgain)
{
    loadGood("fails2later");
    expectInterrupted(ask("Fake:crash"));
    ASSERT_TRUE(spinUntil([this] { return m_restarted == 1; }));
    EXPECT_EQ(runs(), 3);
    EXPECT_TRUE(logged().contains(QStringLiteral("no licence")));
    EXPECT_EQ(m_loadFinished, 1);
    EXPECT_EQ(m_plugin->error(), QString());
}

TEST_F(SupervisedPluginTest, RestartWaitsGrow)
{
    loadGood("fails2to9");
    expectInterrupted(ask("Fake:crash"));
    for (const char *wait : {"in 0 ms", "in 250 ms", "in 500 ms", "in 1000 ms", "in 2000 ms"})
        ASSERT_TRUE(spinUntilLogged(wait)) << wait;
    EXPECT_EQ(runs(), 5);
    // With a wait this long, requests fail at once instead of being queued.
    const Answer answer = ask("Fake:value");
    EXPECT_TRUE(answer.isThere());
    expectInterrupted(answer);
    EXPECT_TRUE(m_root.prefixes().contains(QStringLiteral("Fake")));

    m_plugin->unload(); // while the restart is pending
    EXPECT_EQ(m_unloaded, 1);
    EXPECT_FALSE(m_plugin->isRunning());
    EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Fake")));
    EXPECT_EQ(ask("Fake:value").errorName(), CMError::NoNodeName());
}

TEST_F(SupervisedPluginTest, RestartWaitsAreBounded)
{
    m_options.longestWait = milliseconds(50);
    loadGood("fails2to9");
    expectInterrupted(ask("Fake:crash"));
    ASSERT_TRUE(spinUntil([this] { return m_restarted == 1; }));
    EXPECT_EQ(runs(), 10);
    EXPECT_TRUE(logged().contains(QStringLiteral("in 50 ms")));
    EXPECT_FALSE(logged().contains(QStringLiteral("in 250 ms")));
}

TEST_F(SupervisedPluginTest, TriesAgainWhileTheProgramIsMissing)
{
    m_options.longestWait = milliseconds(2000);
    m_options.program = m_folder.filePath(QStringLiteral("program"));
    ASSERT_TRUE(QFile::link(QStringLiteral(FAKE_PLUGIN), m_options.program));
    loadGood();
    ASSERT_TRUE(QFile::remove(m_options.program));
    const Answer crashed = ask("Fake:crash");
    ASSERT_TRUE(spinUntilLogged("cannot be started"));
    expectInterrupted(crashed);
    EXPECT_FALSE(m_plugin->isRunning());
    const Answer meanwhile = ask("Fake:value");
    EXPECT_TRUE(meanwhile.isThere()) << "nobody knows for how long";
    expectInterrupted(meanwhile);
    ASSERT_TRUE(QFile::link(QStringLiteral(FAKE_PLUGIN), m_options.program));
    ASSERT_TRUE(spinUntil([this] { return m_restarted == 1; }));
    process();
}

// Replacing the process because a setting changed.

TEST_F(SupervisedPluginTest, RestartsAfterKeptForWhatIsNoSetting)
{
    expectRestart("Fake:keptodd", "an unreadable setting");
}

TEST_F(SupervisedPluginTest, IsReplacedWithoutAnErrorWhenAKeptSettingChanges)
{
    loadKeeping();
    const pid_t former = process();
    QObject context;
    int resets = 0;
    const auto subscription = m_root.subscribe(path("Fake:list"), &context,
        [&](const CMChange &change) { resets += change.kind == CMSubscribe::RowsChangeReset(); });
    const Answer pending = ask("Fake:silent");
    const Answer ask1 = ask("Fake:value");
    ASSERT_TRUE(ask1.spin());
    change();
    const Answer waiting = ask("Fake:value");
    ASSERT_TRUE(waiting.spin());
    EXPECT_NE(waiting.list().value(0).toInt(), former);
    EXPECT_EQ(waiting.list().value(1).toInt(), 2);
    EXPECT_TRUE(isGone(former));
    EXPECT_FALSE(pending.isThere()) << "it is asked of the new process, which is silent as well";
    ASSERT_TRUE(spinUntil([&] { return resets == 1 && m_restarted == 1; }));
    EXPECT_EQ(m_restarting, 1);
    EXPECT_FALSE(logged().contains(QStringLiteral("ended:")));

    // A replacement does not count as a failure: the next restart is not delayed.
    const Answer crash = ask("Fake:crash");
    expectInterrupted(crash);
    EXPECT_TRUE(spinUntilLogged("starting again in 0 ms"));
}

TEST_F(SupervisedPluginTest, FinishesChangingRequestsBeforeItIsReplaced)
{
    loadKeeping();
    const Answer writing = setData(m_root, path("Fake:later"), VeskRoles::Value(), 1);
    change();
    ASSERT_TRUE(spinUntil([this] { return m_restarting == 1; }));
    const Answer waiting = ask("Fake:value");
    spinUntil([] { return false; }, 300);
    EXPECT_FALSE(waiting.isThere() || writing.isThere());
    EXPECT_EQ(runs(), 1);
    m_plugin->tell(ValueMessage {path("S:a"), {}, false, TrString()});
    ASSERT_TRUE(waiting.spin() && writing.spin());
    EXPECT_EQ(writing.value().toInt(), 1) << "by the former one";
    EXPECT_EQ(waiting.list().value(1).toInt(), 2);
}

TEST_F(SupervisedPluginTest, IsReplacedEvenIfItDiesWhileFinishing)
{
    loadKeeping();
    const pid_t former = process();
    const Answer writing = setData(m_root, path("Fake:later"), VeskRoles::Value(), 1);
    change();
    ASSERT_TRUE(spinUntil([this] { return m_restarting == 1; }));
    const Answer waiting = ask("Fake:value");
    ASSERT_EQ(::kill(former, SIGKILL), 0);
    expectInterrupted(writing);
    ASSERT_TRUE(waiting.spin());
    EXPECT_EQ(waiting.list().value(1).toInt(), 2);
    EXPECT_EQ(m_restarting, 1);
}

TEST_F(SupervisedPluginTest, UnloadingEndsAProcessThatFinishes)
{
    loadKeeping();
    const Answer writing = setData(m_root, path("Fake:later"), VeskRoles::Value(), 1);
    change();
    ASSERT_TRUE(spinUntil([this] { return m_restarting == 1; }));
    const Answer waiting = ask("Fake:value");
    m_plugin->unload();
    ASSERT_TRUE(spinUntil([this] { return m_unloaded == 1; }));
    EXPECT_TRUE(waiting.isError());
    EXPECT_TRUE(writing.isError());
    EXPECT_EQ(runs(), 1);
    EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Fake")));
}

TEST_F(SupervisedPluginTest, ASettingThatChangesBackReplacesNothing)
{
    loadKeeping();
    const pid_t former = process();
    change(2);
    const Answer waiting = ask("Fake:value");
    EXPECT_FALSE(waiting.isThere());
    change(1);
    ASSERT_TRUE(waiting.spin());
    EXPECT_EQ(waiting.list().value(0).toInt(), former);
    spinUntil([] { return false; }, 500);
    EXPECT_EQ(process(), former);
    EXPECT_EQ(m_restarting, 0);
}

// Unloading.

TEST_F(SupervisedPluginTest, UnloadingEndsTheProcess)
{
    loadGood();
    const pid_t former = process();
    const Answer pending = ask("Fake:silent");
    m_plugin->unload();
    ASSERT_TRUE(spinUntil([this] { return m_unloaded == 1; }));
    EXPECT_TRUE(pending.isThere());
    EXPECT_TRUE(pending.isError());
    EXPECT_TRUE(isGone(former));
    EXPECT_FALSE(m_plugin->isRunning());
    EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Fake")));
    EXPECT_EQ(runs(), 1);
}

TEST_F(SupervisedPluginTest, UnloadingKillsAProcessThatDoesNotEnd)
{
    loadGood("stubborn");
    const pid_t former = process();
    m_plugin->unload();
    ASSERT_TRUE(spinUntil([this] { return m_unloaded == 1; }, 20000));
    EXPECT_TRUE(isGone(former));
    EXPECT_EQ(runs(), 1);
}

TEST_F(SupervisedPluginTest, UnloadingEndsAProcessThatLoads)
{
    make("silent");
    m_plugin->load();
    ASSERT_TRUE(spinUntil([this] { return runs() == 1; }));
    EXPECT_TRUE(m_plugin->isRunning());
    m_plugin->unload();
    ASSERT_TRUE(spinUntil([this] { return m_unloaded == 1; }));
    EXPECT_FALSE(m_plugin->isRunning());
}

TEST_F(SupervisedPluginTest, UnloadingEndsAProcessThatLoadsAgain)
{
    loadGood("slow");
    expectInterrupted(ask("Fake:crash"));
    ASSERT_TRUE(spinUntil([this] { return runs() == 2; }));
    const Answer waiting = ask("Fake:value");
    EXPECT_FALSE(waiting.isThere());
    m_plugin->unload();
    ASSERT_TRUE(spinUntil([this] { return m_unloaded == 1; }));
    EXPECT_TRUE(waiting.isThere());
    EXPECT_TRUE(waiting.isError());
    EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Fake")));
    EXPECT_EQ(m_restarted, 0);
}

TEST_F(SupervisedPluginTest, TheDestructorEndsTheProcess)
{
    loadGood();
    const pid_t former = process();
    const Answer pending = ask("Fake:silent");
    m_plugin.reset();
    EXPECT_TRUE(pending.isThere());
    EXPECT_TRUE(pending.isError());
    EXPECT_TRUE(isGone(former));
    EXPECT_FALSE(m_root.prefixes().contains(QStringLiteral("Fake")));
}

} // namespace
