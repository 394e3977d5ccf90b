// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/core/export.h"
#include "api/values/CMError.h"
#include "api/values/VeskServiceFault.h"

#include <QObject>
#include <QVariant>

#include <climits>
#include <condition_variable>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

class CMContextCall;

/// The error of a request that was dropped without an answer.
VESK_API CMError CMUnansweredError();
/// The error with which a caller cancels its request: if the request is still queued it is dropped,
/// and an HTTP exchange that only reads on its behalf is aborted.
VESK_API CMError CMCancelledError();

/// The shared state of one answer: unfinished, then for good a value or an error. Any thread may
/// read it, wait for it or complete it; the first completion counts, later ones do nothing.
///
/// The caller keeps the data; the answering side gets it wrapped in a CMReply or CMVoidReply.
class VESK_API CMReplyAbstractData {
public:
    CMReplyAbstractData() = default;
    CMReplyAbstractData(const CMReplyAbstractData &) = delete;
    CMReplyAbstractData &operator=(const CMReplyAbstractData &) = delete;
    virtual ~CMReplyAbstractData();

    bool isFinished() const;
    /// Waits until the answer is there, at most \a milliseconds (ULONG_MAX: without limit). Returns
    /// whether it is.
    bool waitForFinished(unsigned long milliseconds = ULONG_MAX) const;

    /// The error it ended with; empty while it is unfinished or when it ended with a value.
    CMError error() const;
    /// Completes the answer with \a error.
    void setError(const CMError &error);
    /// Completes the answer without a value: it succeeded.
    void setFinished();

    /// What went wrong between the answering side and the service that it asked, which the answer
    /// itself may not say. \a find is called by serviceFault(), on any thread. The last function
    /// that was set before the answer was complete counts.
    using FindServiceFault = std::function<VeskServiceFault()>;
    void setServiceFault(FindServiceFault find);
    /// Empty when nothing is known.
    VeskServiceFault serviceFault() const;

    /// Calls \a function once the answer is complete, through the event loop of \a context's
    /// thread, unless \a context is destroyed before; directly when the answer is complete already
    /// and this is that thread. \a context must be alive during this call and stay on its thread.
    void whenFinished(QObject *context, std::function<void()> function);
    /// Calls \a function once the answer is complete, on the thread that completes it, or directly
    /// when it is complete already. \a function must return soon.
    void whenFinished(std::function<void()> function);

protected:
    /// Completes the answer after \a store ran under the mutex; does nothing when it is complete.
    void finish(const std::function<void()> &store);

    mutable VeskMutex m_mutex;

private:
    bool m_finished VESK_GUARDED_BY(m_mutex) = false;
    /// Created by the first thread that waits. Shared, because it is notified outside the mutex,
    /// when a thread that waited may have destroyed this already.
    mutable std::shared_ptr<std::condition_variable> m_condition VESK_GUARDED_BY(m_mutex);
    CMError m_error VESK_GUARDED_BY(m_mutex);
    FindServiceFault m_findServiceFault VESK_GUARDED_BY(m_mutex);
    /// Called through event loops, and directly.
    std::vector<std::shared_ptr<CMContextCall>> m_watchers VESK_GUARDED_BY(m_mutex);
    std::vector<std::function<void()>> m_followers VESK_GUARDED_BY(m_mutex);
};

/// An answer that carries a T.
template <class T>
class CMReplyData : public CMReplyAbstractData {
public:
    /// Waits without limit, then returns a copy of the value; a default one after an error.
    virtual T value() const
    {
        waitForFinished();
        const VeskMutexLock lock(m_mutex);
        return m_value;
    }
    /// Completes the answer.
    virtual void setValue(const QVariant &value)
    {
        finish([this, &value]() VESK_REQUIRES(m_mutex) { m_value = value.template value<T>(); });
    }

private:
    T m_value VESK_GUARDED_BY(m_mutex) {};
};

template <>
inline void CMReplyData<QVariant>::setValue(const QVariant &value)
{
    finish([this, &value]() VESK_REQUIRES(m_mutex) { m_value = value; });
}

/// The service's fault behind an answer that is an error or a screen without rows. Empty for every
/// other answer.
VESK_API VeskServiceFault CMUnexplainedFault(const CMReplyData<QVariant> &answer);

/// The guarantee that every request is answered: when it is destroyed and the answer is not
/// complete, the answer ends with CMUnansweredError().
class VESK_API CMReplyPromise {
public:
    explicit CMReplyPromise(std::shared_ptr<CMReplyAbstractData> data);
    CMReplyPromise(const CMReplyPromise &) = delete;
    CMReplyPromise &operator=(const CMReplyPromise &) = delete;
    ~CMReplyPromise();

    const std::shared_ptr<CMReplyAbstractData> &data() const { return m_data; }

private:
    std::shared_ptr<CMReplyAbstractData> m_data;
};

/// The answering side of a CMReplyData<T>; copies share one answer. Null for a request that wants
/// none. Keep a copy to answer later; destroying the last copy answers with an error, so make one
/// from a CMReplyData and copy that one.
template <class T>
class CMReply {
public:
    CMReply() = default;
    explicit CMReply(std::shared_ptr<CMReplyData<T>> data)
        : m_promise(data ? std::make_shared<CMReplyPromise>(std::move(data)) : nullptr)
    {
    }

    bool isNull() const { return !m_promise; }
    /// Null when this is.
    CMReplyData<T> *data() const
    {
        return m_promise ? static_cast<CMReplyData<T> *>(m_promise->data().get()) : nullptr;
    }
    /// Keeps the data alive without keeping the request unanswered; null when this is.
    std::shared_ptr<CMReplyAbstractData> sharedData() const
    {
        return m_promise ? m_promise->data() : nullptr;
    }
    bool isFinished() const { return !isNull() && data()->isFinished(); }
    CMError error() const { return isNull() ? CMError() : data()->error(); }
    /// Each does nothing when this is null.
    void setValue(const QVariant &value) const
    {
        if (!isNull())
            data()->setValue(value);
    }
    void setError(const CMError &error) const
    {
        if (!isNull())
            data()->setError(error);
    }

private:
    std::shared_ptr<CMReplyPromise> m_promise;
};

/// The answering side of an answer that only succeeds or fails. Does not own the data.
class VESK_API CMVoidReply {
public:
    explicit CMVoidReply(CMReplyAbstractData *data)
        : m_data(data)
    {
    }

    bool isNull() const { return !m_data; }
    CMError error() const { return m_data ? m_data->error() : CMError(); }
    void setError(const CMError &error) const
    {
        if (m_data)
            m_data->setError(error);
    }
    void setFinished() const
    {
        if (m_data)
            m_data->setFinished();
    }

private:
    CMReplyAbstractData *m_data;
};
