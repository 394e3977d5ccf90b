// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/ThreadCheck.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {

class Object : public QObject {
public:
    void call() const { VESK_ASSERT_OWN_THREAD(); }
};

class Plain {
public:
    void call() const { VESK_ASSERT_THREAD(m_thread); }

private:
    VeskThreadCheck m_thread;
};

void onAnotherThread(const std::function<void()> &function)
{
    std::thread(function).join();
}

} // namespace

TEST(ThreadCheckTest, PassesOnTheThreadOfTheObject)
{
    const Object object;
    object.call();
    const Plain plain;
    plain.call();
    onAnotherThread([] {
        const Plain created;
        created.call();
    });
}

TEST(ThreadCheckTest, FollowsAnObjectToAnotherThread)
{
    QThread thread;
    Object object;
    object.moveToThread(&thread);
    bool called = false;
    QObject::connect(
        &thread, &QThread::started, &object,
        [&] {
            object.call();
            called = true;
            thread.quit();
        },
        Qt::QueuedConnection);
    thread.start();
    thread.wait();
    EXPECT_TRUE(called);
}

TEST(ThreadCheckDeathTest, EndsTheProcessOnAnyOtherThread)
{
    const Object object;
    EXPECT_DEATH(
        onAnotherThread([&] { object.call(); }), "Assertion failed: called on the object's thread");
    const Plain plain;
    EXPECT_DEATH(onAnotherThread([&] { plain.call(); }),
        "Assertion failed: called on the thread that it was made on");
}
