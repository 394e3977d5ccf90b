// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <functional>
#include <memory>
#include <utility>

/// A function that is called on the thread of a context object, through its event loop: once for
/// all triggers that arrive before the loop runs it, and never after the context was destroyed or
/// the call was closed. The function is released as soon as it can no longer be called.
///
/// The context must be alive while create() runs and must stay on its thread. It may be destroyed
/// there at any time, also while another thread triggers the call. The creator closes the call,
/// except for a Once call that was triggered.
class CMContextCall {
public:
    using Function = std::function<void()>;
    enum Times { Once, EachTime };

    static std::shared_ptr<CMContextCall> create(QObject *context, Times times, Function function)
    {
        std::shared_ptr<CMContextCall> call(new CMContextCall(times, std::move(function)));
        auto *receiver = new Receiver(call);
        if (context->thread() != QThread::currentThread())
            receiver->moveToThread(context->thread());
        {
            const VeskMutexLock lock(call->m_mutex);
            call->m_receiver = receiver;
        }
        QObject::connect(
            context, &QObject::destroyed, receiver, [call] { call->close(); },
            Qt::DirectConnection);
        return call;
    }

    /// Any thread.
    void trigger()
    {
        const VeskMutexLock lock(m_mutex);
        if (!m_receiver || m_triggered)
            return;
        m_triggered = true;
        QCoreApplication::postEvent(m_receiver, new QEvent(QEvent::User));
    }

    /// Any thread; on another thread than the context's the function may still be running when this
    /// returns.
    void close()
    {
        Receiver *receiver = nullptr;
        std::shared_ptr<const Function> function; // released outside the lock
        {
            const VeskMutexLock lock(m_mutex);
            receiver = std::exchange(m_receiver, nullptr);
            function = std::move(m_function);
        }
        if (!receiver)
            return;
        if (runsElsewhere(receiver))
            receiver->deleteLater();
        else
            delete receiver;
    }

    bool isOpen() const
    {
        const VeskMutexLock lock(m_mutex);
        return m_receiver != nullptr;
    }

    /// Whether the function may be running now on a thread other than the calling one.
    bool isElsewhere() const
    {
        const VeskMutexLock lock(m_mutex);
        return m_receiver && runsElsewhere(m_receiver);
    }

private:
    static bool runsElsewhere(const QObject *object)
    {
        const QThread *thread = object->thread();
        return thread && thread != QThread::currentThread() && !thread->isFinished();
    }

    /// Lives on the context's thread and keeps the call alive for as long as it is open.
    class Receiver : public QObject {
    public:
        explicit Receiver(std::shared_ptr<CMContextCall> call)
            : m_call(std::move(call))
        {
        }

        bool event(QEvent *event) override
        {
            if (event->type() != QEvent::User)
                return QObject::event(event);
            const std::shared_ptr<CMContextCall> call = m_call;
            call->run(); // may delete this
            return true;
        }

    private:
        const std::shared_ptr<CMContextCall> m_call;
    };

    CMContextCall(Times times, Function function)
        : m_times(times)
        , m_function(std::make_shared<const Function>(std::move(function)))
    {
    }

    void run()
    {
        std::shared_ptr<const Function> function;
        {
            const VeskMutexLock lock(m_mutex);
            m_triggered = false;
            function = m_function;
        }
        if (!function)
            return;
        (*function)();
        if (m_times == Once)
            close();
    }

    const Times m_times;

    mutable VeskMutex m_mutex;
    Receiver *m_receiver VESK_GUARDED_BY(m_mutex) = nullptr;
    bool m_triggered VESK_GUARDED_BY(m_mutex) = false;
    std::shared_ptr<const Function> m_function VESK_GUARDED_BY(m_mutex);
};
