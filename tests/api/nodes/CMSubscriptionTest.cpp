// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRootWorker.h"

#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

namespace {

/// Records the changes that a subscriber receives, as text.
class Told {
public:
    void operator()(const CMChange &change)
    {
        m_lines.append(QStringLiteral("%1 %2 %3 %4")
                           .arg(change.path.toEncoded(), change.kind)
                           .arg(change.first)
                           .arg(change.last));
    }
    const QStringList &lines() const { return m_lines; }
    QStringList take()
    {
        QCoreApplication::processEvents();
        return std::exchange(m_lines, {});
    }

private:
    QStringList m_lines;
};

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *line : texts)
        result.append(QString::fromUtf8(line));
    return result;
}

/// Records the paths that were connected ("+") and disconnected ("-").
class ListeningWorker : public CMAbstractWorker {
public:
    void request(CMRequest) override { }
    void connectChange(const CMPath &path) override { log("+", path); }
    void disconnectChange(const CMPath &path) override { log("-", path); }

    QStringList take()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return std::exchange(m_log, {});
    }

private:
    void log(const char *what, const CMPath &path)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_log.append(QString::fromUtf8(what) + path.toEncoded());
    }

    std::mutex m_mutex;
    QStringList m_log;
};

TEST(CMSubscription, IsNotifiedOfChangesOfExactlyItsPath)
{
    CMRootWorker root;
    QObject context;
    Told told;
    const auto subscription
        = root.subscribe(path("A:x?p=1"), &context, [&](const CMChange &c) { told(c); });
    CMSubscribe subscribers;
    subscribers.changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    subscribers.changed(path("A:x/y?p=1"), CMSubscribe::ValueChanged(), -1, -1);
    subscribers.changed(path("A:x?p=1"), CMSubscribe::RowsChangeInserted(), 2, 3);
    EXPECT_EQ(told.lines(), QStringList()) << "changes come through the event loop";
    EXPECT_EQ(told.take(), lines({"A:x?p=1 rowsInserted 2 3"}));
}

TEST(CMSubscription, IsNotifiedOfChangesAboveItWithItsOwnPath)
{
    CMRootWorker root;
    QObject context;
    Told told;
    const auto note = [&](const CMChange &c) { told(c); };
    const auto one = root.subscribe(path("A:x?p=1&q=2"), &context, note);
    const auto two = root.subscribe(path("A:x/y?p=1"), &context, note);
    const auto three = root.subscribe(path("A:xy?p=1"), &context, note);
    const auto four = root.subscribe(path("A:x"), &context, note);
    CMSubscribe().changedStartingWith(path("A:x?p=1"), CMSubscribe::RowsChangeReset(), -1, -1);
    QStringList seen = told.take();
    seen.sort();
    EXPECT_EQ(seen, lines({"A:x/y?p=1 rowsReset -1 -1", "A:x?p=1&q=2 rowsReset -1 -1"}));
}

TEST(CMSubscription, KeepsTheOrderOfChanges)
{
    CMRootWorker root;
    QObject context;
    std::vector<int> order;
    const auto subscription = root.subscribe(
        path("A:x"), &context, [&](const CMChange &c) { order.push_back(c.first); });
    for (int i = 0; i < 100; ++i)
        CMSubscribe().changed(path("A:x"), CMSubscribe::RowsChangeChanged(), i, i);
    QCoreApplication::processEvents();
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(CMSubscription, IsNotifiedOnceOfRepeatedChangesInTheQueue)
{
    CMRootWorker root;
    QObject context;
    Told told;
    const auto subscription
        = root.subscribe(path("A:x"), &context, [&](const CMChange &c) { told(c); });
    CMSubscribe subscribers;
    for (int i = 0; i < 2; ++i)
        subscribers.changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    for (int i = 0; i < 2; ++i)
        subscribers.changed(path("A:x"), CMSubscribe::RowsChangeInserted(), 0, 0);
    EXPECT_EQ(told.take(),
        lines({"A:x valueChanged -1 -1", "A:x rowsInserted 0 0", "A:x rowsInserted 0 0"}));
    subscribers.changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    EXPECT_EQ(told.take(), lines({"A:x valueChanged -1 -1"}));
}

TEST(CMSubscription, IsNotNotifiedOnceItIsDestroyed)
{
    CMRootWorker root;
    QObject context;
    Told told;
    auto subscription = root.subscribe(path("A:x"), &context, [&](const CMChange &c) { told(c); });
    CMSubscribe().changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    subscription.reset();
    CMSubscribe().changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    EXPECT_EQ(told.take(), QStringList());
}

TEST(CMSubscription, IsNotNotifiedOnceItsContextIsDestroyed)
{
    CMRootWorker root;
    auto context = std::make_unique<QObject>();
    Told told;
    const auto subscription
        = root.subscribe(path("A:x"), context.get(), [&](const CMChange &c) { told(c); });
    CMSubscribe().changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    context.reset();
    CMSubscribe().changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    EXPECT_EQ(told.take(), QStringList());
}

TEST(CMSubscription, MayEndWhileItIsNotified)
{
    CMRootWorker root;
    QObject context;
    int told = 0;
    std::unique_ptr<CMSubscription> subscription;
    subscription = root.subscribe(path("A:x"), &context, [&](const CMChange &) {
        ++told;
        subscription.reset();
    });
    for (int i = 0; i < 3; ++i)
        CMSubscribe().changed(path("A:x"), CMSubscribe::RowsChangeChanged(), i, i);
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 1);
}

TEST(CMSubscription, MayLoseItsContextWhileItIsNotified)
{
    CMRootWorker root;
    auto *context = new QObject;
    int told = 0;
    const auto subscription = root.subscribe(path("A:x"), context, [&](const CMChange &) {
        ++told;
        delete context;
    });
    for (int i = 0; i < 3; ++i)
        CMSubscribe().changed(path("A:x"), CMSubscribe::RowsChangeChanged(), i, i);
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 1);
}

TEST(CMSubscription, MayOutliveTheRoot)
{
    QObject context;
    std::unique_ptr<CMSubscription> subscription;
    {
        CMRootWorker root;
        subscription = root.subscribe(path("A:x"), &context, [](const CMChange &) {});
    }
    CMSubscribe().changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    subscription.reset();
}

TEST(CMSubscription, IsNotifiedOnItsContextsThread)
{
    CMRootWorker root;
    WorkerThread thread([] { return new QObject; });
    std::unique_ptr<CMSubscription> subscription;
    std::promise<QThread *> toldOn;
    thread.call([&] {
        subscription = root.subscribe(path("A:x"), thread.object(),
            [&](const CMChange &) { toldOn.set_value(QThread::currentThread()); });
    });
    CMSubscribe().changed(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
    EXPECT_EQ(toldOn.get_future().get(), &thread);
    thread.call([&] { subscription.reset(); });
}

TEST(CMSubscription, NotifiesTheWorkerOfTheFirstAndTheLastSubscriber)
{
    CMRootWorker root;
    ListeningWorker worker;
    root.addWorker(QStringLiteral("A"), &worker);
    QObject context;
    const auto nothing = [](const CMChange &) {};
    auto one = root.subscribe(path("A:x"), &context, nothing);
    auto two = root.subscribe(path("A:x"), &context, nothing);
    auto other = root.subscribe(path("A:x?p=1"), &context, nothing);
    EXPECT_EQ(worker.take(), lines({"+A:x", "+A:x?p=1"}));
    one.reset();
    EXPECT_EQ(worker.take(), QStringList());
    two.reset();
    EXPECT_EQ(worker.take(), lines({"-A:x"}));
    one = root.subscribe(path("A:x"), &context, nothing);
    EXPECT_EQ(worker.take(), lines({"+A:x"}));
}

TEST(CMSubscription, NotifiesALaterWorkerAndResetsItsSubscribers)
{
    CMRootWorker root;
    QObject context;
    Told told;
    const auto subscription
        = root.subscribe(path("A:x"), &context, [&](const CMChange &c) { told(c); });
    for (int round = 0; round < 2; ++round) {
        ListeningWorker worker;
        root.addWorker(QStringLiteral("A"), &worker);
        EXPECT_EQ(worker.take(), lines({"+A:x"}));
        EXPECT_EQ(told.take(), lines({"A:x rowsReset -1 -1"}));
        root.removeWorker(&worker);
        EXPECT_EQ(worker.take(), QStringList());
    }
}

TEST(CMSubscription, FollowsAForeignPathToItsWorkerAndBack)
{
    CMRootWorker root;
    ListeningWorker player;
    ListeningWorker plugin;
    root.addWorker(QStringLiteral("player"), &player);
    QObject context;
    const auto subscription = root.subscribe(path("player:a/b"), &context, [](const CMChange &) {});
    EXPECT_EQ(player.take(), lines({"+player:a/b"}));
    root.addForeignPath(path("player:a"), &plugin);
    EXPECT_EQ(player.take(), lines({"-player:a/b"}));
    EXPECT_EQ(plugin.take(), lines({"+player:a/b"}));
    root.removeForeignPath(path("player:a"), &plugin);
    EXPECT_EQ(plugin.take(), lines({"-player:a/b"}));
    EXPECT_EQ(player.take(), lines({"+player:a/b"}));
}

TEST(CMSubscription, WorkersAreNotifiedInPairsHoweverManyThreadsSubscribe)
{
    CMRootWorker root;
    ListeningWorker worker;
    root.addWorker(QStringLiteral("A"), &worker);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&root] {
            QObject context;
            for (int n = 0; n < 200; ++n)
                root.subscribe(path("A:x"), &context, [](const CMChange &) {});
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    const QStringList log = worker.take();
    ASSERT_GE(log.size(), 2);
    EXPECT_EQ(log.size() % 2, 0);
    for (int i = 0; i < log.size(); ++i)
        EXPECT_EQ(log.at(i), i % 2 ? QStringLiteral("-A:x") : QStringLiteral("+A:x"));
}

TEST(CMSubscription, IsNeverNotifiedAfterItsEndWhileOtherThreadsNotify)
{
    CMRootWorker root;
    WorkerThread home([] { return new QObject; });
    std::atomic<bool> stop {false};
    std::atomic<int> heard {0};
    bool toldLate = false; // accessed by the home thread only
    std::vector<std::thread> telling;
    for (int i = 0; i < 2; ++i) {
        telling.emplace_back([&stop] {
            while (!stop) {
                CMSubscribe().changed(path("A:x/y"), CMSubscribe::ValueChanged(), -1, -1);
                CMSubscribe().changedStartingWith(path("A:x"), CMSubscribe::ValueChanged(), -1, -1);
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        std::unique_ptr<CMSubscription> subscription;
        std::unique_ptr<QObject> context;
        bool ended = false; // accessed by the home thread only
        const int before = heard;
        home.call([&] {
            context = std::make_unique<QObject>();
            subscription = root.subscribe(path("A:x/y"), context.get(), [&](const CMChange &) {
                ++heard;
                toldLate = toldLate || ended;
            });
        });
        while (heard == before)
            std::this_thread::yield();
        home.call([&] {
            if (round % 2)
                subscription.reset();
            else
                context.reset();
            ended = true;
        });
        // Notifications that were queued before the end would be delivered before this call.
        home.call([&] {
            subscription.reset();
            context.reset();
        });
        ASSERT_FALSE(toldLate);
    }
    stop = true;
    for (std::thread &thread : telling)
        thread.join();
}

TEST(CMSubscription, ADirectOneIsCalledOnTheNotifyingThread)
{
    CMRootWorker root;
    Told told;
    std::thread::id toldOn;
    auto subscription = root.subscribeDirectly(path("A:x"), [&](const CMChange &change) {
        toldOn = std::this_thread::get_id();
        told(change);
    });
    std::thread::id tellsOn;
    std::thread([&] {
        tellsOn = std::this_thread::get_id();
        root.notifyChanged({path("A:x"), CMSubscribe::ValueChanged()});
        root.notifyChanged({path("A:x"), CMSubscribe::ValueChanged()});
        EXPECT_EQ(told.lines().size(), 2) << "none waits, so none is left out";
        subscription.reset(); // allowed on any thread
        root.notifyChanged({path("A:x"), CMSubscribe::ValueChanged()});
    }).join();
    EXPECT_EQ(toldOn, tellsOn);
    EXPECT_EQ(told.lines(), lines({"A:x valueChanged -1 -1", "A:x valueChanged -1 -1"}));
}

TEST(CMSubscription, EmitsASignalForChangesOfTheDefaultWorkersPaths)
{
    CMRootWorker root;
    ListeningWorker own;
    ListeningWorker others;
    root.addWorker(QStringLiteral("A"), &own);
    root.setDefaultWorker(&others);
    QStringList elsewhere;
    QObject::connect(&root, &CMRootWorker::changedElsewhere,
        [&elsewhere](const CMChange &change, bool startingWith) {
            elsewhere.append(change.path.toEncoded() + QLatin1String(startingWith ? "*" : ""));
        });
    Told told;
    const auto subscription
        = root.subscribe(path("B:x"), &root, [&told](const CMChange &change) { told(change); });
    EXPECT_EQ(others.take(), lines({"+B:x"}));

    root.notifyChanged({path("A:x"), CMSubscribe::ValueChanged()});
    root.notifyChanged({path("B:x"), CMSubscribe::ValueChanged()});
    root.notifyChangedStartingWith({path("B:"), CMSubscribe::RowsChangeReset()});
    EXPECT_EQ(elsewhere, lines({"B:x", "B:*"}));
    EXPECT_EQ(told.take(), lines({"B:x valueChanged -1 -1", "B:x rowsReset -1 -1"}));

    root.passOnChanged({path("B:x"), CMSubscribe::ValueChanged()});
    EXPECT_EQ(elsewhere.size(), 2) << "it comes from there";
    EXPECT_EQ(told.take(), lines({"B:x valueChanged -1 -1"}));
    root.removeWorker(&others);
}

} // namespace
