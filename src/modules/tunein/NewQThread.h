// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/vesk.h"

#include <QCoreApplication>
#include <QMutex>
#include <QMutexLocker>
#include <QThread>
#include <QWaitCondition>

#include <functional>

/// A thread that creates one T, which then lives on it, and runs an event loop until it is told to
/// exit. The thread object deletes itself, on the thread that started it, after it has finished.
/// The T belongs to the caller of createInNewQThread, who deletes it, or stops using it, before the
/// thread has finished.
template <class T>
class NewQThread : public QThread {
public:
    /// Starts the thread under \a name and returns once its object exists.
    T *create(const QString &name)
    {
        m_create = [this, name] {
            veskSetThreadName(name);
            m_object = new T;
        };
        veskConnect(this, &QThread::finished, static_cast<QObject *>(this), &QObject::deleteLater);
        QMutexLocker lock(&m_mutex);
        start(QThread::InheritPriority);
        while (!m_object)
            m_condition.wait(&m_mutex);
        return m_object;
    }

protected:
    void run() override
    {
        {
            QMutexLocker lock(&m_mutex);
            m_create();
            m_condition.wakeAll();
        }
        exec();
    }

private:
    /// Guarded by m_mutex until create() has returned; fixed afterwards.
    T *m_object = nullptr;
    QWaitCondition m_condition;
    QMutex m_mutex;
    std::function<void()> m_create;
};

/// Creates a T on a new thread called \a name, which runs an event loop for it. Returns when the T
/// exists.
template <class T>
T *createInNewQThread(const QString &name)
{
    return (new NewQThread<T>)->create(name);
}

/// Waits for \a thread, which createInNewQThread started and which is about to leave its event
/// loop, and makes sure that the thread object is deleted even if the calling thread's event loop
/// never runs again.
inline void joinNewQThread(QThread *thread)
{
    const bool startedHere = thread->thread() == QThread::currentThread();
    thread->wait();
    if (startedHere) {
        // The thread's `finished` has queued a deleteLater here: deliver it, then what it asks for.
        QCoreApplication::sendPostedEvents(thread, QEvent::MetaCall);
        QCoreApplication::sendPostedEvents(thread, QEvent::DeferredDelete);
    }
}
