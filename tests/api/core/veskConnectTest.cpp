// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/vesk.h"

#include "tests/support/LogCapture.h"
#include "tests/support/WorkerThread.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

/// Never defined: Qt 6 registers every other type by itself.
struct Unregistered;

struct Uncopyable {
    Uncopyable() = default;
    Uncopyable(const Uncopyable &) = delete;
    Uncopyable &operator=(const Uncopyable &) = delete;
};

struct Declared { };

} // namespace
Q_DECLARE_METATYPE(Declared)

class Talker : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void plain(int number, const QString &text);
    void pointer(Unregistered *value);
    void unregistered(int number, const Unregistered &value);
    void uncopyable(const Uncopyable &value);
    void declared(const Declared &value);
};

class Listener : public QObject {
    Q_OBJECT

public:
    void onPlain(int number, const QString &) { sum += number; }
    void onUnregistered(int number, const Unregistered &) { sum += number; }
    std::atomic<int> sum {0};
};

namespace {

bool verify(const QObject &sender, void (Talker::*signal)(const Declared &),
    const QObject &receiver, Qt::ConnectionType type)
{
    return verifyConnectionSignalParameters(
        &sender, QMetaMethod::fromSignal(signal), &receiver, type);
}

const QMetaMethod unregisteredSignal = QMetaMethod::fromSignal(&Talker::unregistered);

} // namespace

class ConnectionParameters : public testing::Test {
protected:
    WorkerThread thread {[] { return new Listener; }};
    Talker talker;
    Listener here;
    LogCapture log {"Vesk"};

    const QObject &there() const { return *thread.object(); }
    bool check(const QMetaMethod &signal, const QObject &receiver, Qt::ConnectionType type)
    {
        return verifyConnectionSignalParameters(&talker, signal, &receiver, type);
    }
};

TEST_F(ConnectionParameters, AreFineWhenRegistered)
{
    const QMetaMethod plain = QMetaMethod::fromSignal(&Talker::plain);
    EXPECT_TRUE(check(plain, there(), Qt::AutoConnection));
    EXPECT_TRUE(check(plain, there(), Qt::QueuedConnection));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ConnectionParameters, AreFineWhenPointers)
{
    EXPECT_TRUE(check(QMetaMethod::fromSignal(&Talker::pointer), there(), Qt::QueuedConnection));
}

TEST_F(ConnectionParameters, AreFineWhenDeclaredThoughNeverUsedBefore)
{
    EXPECT_TRUE(verify(talker, &Talker::declared, there(), Qt::QueuedConnection));
}

TEST_F(ConnectionParameters, MustBeRegisteredToCrossThreads)
{
    EXPECT_FALSE(check(unregisteredSignal, there(), Qt::AutoConnection));
    EXPECT_EQ(log.lines(),
        QStringList(
            QStringLiteral("ERROR Cannot queue signal Talker::unregistered(int,Unregistered): "
                           "parameter type Unregistered is no registered meta-type")));
}

TEST_F(ConnectionParameters, MustBeRegisteredToBeQueuedOnOneThread)
{
    EXPECT_FALSE(check(unregisteredSignal, here, Qt::QueuedConnection));
    EXPECT_FALSE(check(
        unregisteredSignal, here, Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection)));
}

TEST_F(ConnectionParameters, MustBeCopyableToBeQueued)
{
    const QMetaMethod uncopyable = QMetaMethod::fromSignal(&Talker::uncopyable);
    EXPECT_FALSE(check(uncopyable, there(), Qt::AutoConnection));
    EXPECT_FALSE(check(uncopyable, here, Qt::QueuedConnection));
    EXPECT_TRUE(check(uncopyable, here, Qt::AutoConnection));
}

TEST_F(ConnectionParameters, MayBeAnythingInACallThatIsNotQueued)
{
    EXPECT_TRUE(check(unregisteredSignal, here, Qt::AutoConnection));
    EXPECT_TRUE(check(unregisteredSignal, there(), Qt::DirectConnection));
    EXPECT_TRUE(check(unregisteredSignal, there(), Qt::BlockingQueuedConnection));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(VeskConnect, Connects)
{
    Talker talker;
    Listener listener;
    const QMetaObject::Connection connection
        = veskConnect(&talker, &Talker::plain, &listener, &Listener::onPlain);
    EXPECT_TRUE(connection);
    Q_EMIT talker.plain(3, QString());
    EXPECT_EQ(listener.sum, 3);
}

TEST(VeskConnect, ConnectsAcrossThreads)
{
    WorkerThread thread([] { return new Listener; });
    auto *const listener = static_cast<Listener *>(thread.object());
    Talker talker;
    veskConnect(&talker, &Talker::plain, listener, &Listener::onPlain);
    Q_EMIT talker.plain(4, QString());
    EXPECT_TRUE(spinUntil([listener] { return listener->sum == 4; }));
}

TEST(VeskConnectDeathTest, StopsTheProcessWhenItCannotConnect)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Talker talker;
    Listener listener;
    const Qt::ConnectionType once = Qt::ConnectionType(Qt::AutoConnection | Qt::UniqueConnection);
    veskConnect(&talker, &Talker::plain, &listener, &Listener::onPlain, once);
    EXPECT_DEATH(veskConnect(&talker, &Talker::plain, &listener, &Listener::onPlain, once),
        "Assertion failed: connection");
}

TEST(VeskConnectDeathTest, StopsTheProcessWhenAParameterCannotCrossThreads)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Talker talker;
    QThread elsewhere;
    Listener listener;
    listener.moveToThread(&elsewhere);
    EXPECT_DEATH(veskConnect(&talker, &Talker::unregistered, &listener, &Listener::onUnregistered),
        "Assertion failed: verifyConnectionSignalParameters\\(sender, signal, receiver, type\\)");
}

#include "veskConnectTest.moc"
