// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

/// \file
/// A mutex that the compiler checks: a member declared VESK_GUARDED_BY(m_mutex) can only be touched
/// while a VeskMutexLock holds m_mutex, and a function declared VESK_REQUIRES(m_mutex) only be
/// called then. Clang's thread-safety analysis does that (-Wthread-safety, an error in our clang
/// builds: https://clang.llvm.org/docs/ThreadSafetyAnalysis.html); for other compilers the
/// annotations are comments. Nothing here costs anything at run time.

#ifdef __clang__
#define VESK_THREAD_ANNOTATION(annotation) __attribute__((annotation))
#else
#define VESK_THREAD_ANNOTATION(annotation)
#endif

/// For members: what may only be read and written while the mutex is held.
#define VESK_GUARDED_BY(mutex) VESK_THREAD_ANNOTATION(guarded_by(mutex))
/// For pointers: what they point to, the same.
#define VESK_PT_GUARDED_BY(mutex) VESK_THREAD_ANNOTATION(pt_guarded_by(mutex))
/// For mutexes: the order in which several are locked.
#define VESK_ACQUIRED_AFTER(...) VESK_THREAD_ANNOTATION(acquired_after(__VA_ARGS__))
/// For functions: the caller holds the mutex.
#define VESK_REQUIRES(...) VESK_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
/// For functions: the caller must not hold the mutex, because the function locks it.
#define VESK_EXCLUDES(...) VESK_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
/// For functions that are right for a reason that the analysis cannot see; the reason stands there.
#define VESK_NO_THREAD_SAFETY_ANALYSIS VESK_THREAD_ANNOTATION(no_thread_safety_analysis)

/// A std::mutex with those annotations. Locked by VeskMutexLock only.
class VESK_THREAD_ANNOTATION(capability("mutex")) VeskMutex {
public:
    VeskMutex() = default;
    VeskMutex(const VeskMutex &) = delete;
    VeskMutex &operator=(const VeskMutex &) = delete;

private:
    friend class VeskMutexLock;
    std::mutex m_mutex;
};

/// Holds a mutex from its construction to its destruction, except between unlock() and lock().
class VESK_THREAD_ANNOTATION(scoped_lockable) VeskMutexLock {
public:
    explicit VeskMutexLock(VeskMutex &mutex) VESK_THREAD_ANNOTATION(acquire_capability(mutex))
        : m_lock(mutex.m_mutex)
    {
    }
    ~VeskMutexLock() VESK_THREAD_ANNOTATION(release_capability()) = default;
    VeskMutexLock(const VeskMutexLock &) = delete;
    VeskMutexLock &operator=(const VeskMutexLock &) = delete;

    void lock() VESK_THREAD_ANNOTATION(acquire_capability()) { m_lock.lock(); }
    void unlock() VESK_THREAD_ANNOTATION(release_capability()) { m_lock.unlock(); }

    /// Waits for \a condition; may return without it. The mutex is unlocked meanwhile. Write the
    /// loop where the analysis sees it: while (!m_ready) lock.wait(m_condition);
    void wait(std::condition_variable &condition) { condition.wait(m_lock); }
    /// The same until \a deadline at the latest; returns whether there is time left.
    template <class Clock, class Duration>
    [[nodiscard]] bool waitUntil(std::condition_variable &condition,
        const std::chrono::time_point<Clock, Duration> &deadline)
    {
        return condition.wait_until(m_lock, deadline) == std::cv_status::no_timeout;
    }

private:
    std::unique_lock<std::mutex> m_lock;
};
