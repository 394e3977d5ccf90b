// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/Mutex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// A value that one thread sets and another waits for.
class Signal {
public:
    void set()
    {
        {
            const VeskMutexLock lock(m_mutex);
            m_isSet = true;
        }
        m_changed.notify_all();
    }
    void wait()
    {
        VeskMutexLock lock(m_mutex);
        while (!m_isSet)
            lock.wait(m_changed);
    }
    /// Whether it is set before \a deadline.
    bool waitUntil(Clock::time_point deadline)
    {
        VeskMutexLock lock(m_mutex);
        while (!m_isSet) {
            if (!lock.waitUntil(m_changed, deadline))
                return m_isSet;
        }
        return true;
    }

private:
    VeskMutex m_mutex;
    std::condition_variable m_changed;
    bool m_isSet VESK_GUARDED_BY(m_mutex) = false;
};

} // namespace

TEST(MutexTest, AdmitsOneThreadAtATime)
{
    constexpr int Rounds = 20000;
    VeskMutex mutex;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < Rounds; ++round) {
                const VeskMutexLock lock(mutex);
                ++count;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(count, 4 * Rounds);
}

TEST(MutexTest, CanBeReleasedAndLockedAgainWithinAScope)
{
    VeskMutex mutex;
    bool entered = false;
    VeskMutexLock lock(mutex);
    lock.unlock();
    // Would block forever if the mutex were still locked.
    std::thread([&] {
        const VeskMutexLock other(mutex);
        entered = true;
    }).join();
    lock.lock();
    EXPECT_TRUE(entered);
}

TEST(MutexTest, WaitsUntilItIsNotified)
{
    Signal asked;
    Signal answered;
    std::thread answering([&] {
        asked.wait();
        answered.set();
    });
    asked.set();
    answered.wait();
    answering.join();
    EXPECT_TRUE(answered.waitUntil(Clock::now()));
}

TEST(MutexTest, WaitsUntilTheDeadlineAtTheLatest)
{
    Signal never;
    const auto deadline = Clock::now() + 20ms;
    EXPECT_FALSE(never.waitUntil(deadline));
    EXPECT_GE(Clock::now(), deadline);
}
