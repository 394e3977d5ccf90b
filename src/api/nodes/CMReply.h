// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/CMError.h"
#include "api/values/VeskServiceFault.h"

#include <QObject>
#include <QVariant>

#include <climits>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

class CMContextCall;

/// What an answer ends with when nobody gave one.
VESK_API CMError CMUnansweredError();
/// With this the asking side ends an answer that it does not want any more: a request that still
/// waits is dropped then, and an HTTP exchange that only reads for it is ended.
VESK_API CMError CMCancelledError();

/// The shared state of one answer: unfinished, then once and for all a value or an error. Any
/// thread may wait for it, ask for it, or complete it; whoever completes it second changes nothing.
///
/// The one who asks keeps the data; the one who answers gets it wrapped in a CMReply or
/// CMVoidReply.
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
    /// Completes the answer with no more to say than that it succeeded.
    void setFinished();

    /// What went wrong between the one who answers and a service that was asked for the answer,
    /// which may have to say nothing of it: \a find is called when that is asked for, on any
    /// thread. The last one counts that was given before the answer was there.
    using FindServiceFault = std::function<VeskServiceFault()>;
    void setServiceFault(FindServiceFault find);
    /// Empty when nothing is known.
    VeskServiceFault serviceFault() const;

    /// Calls \a function once the answer is there: through the event loop of \a context's thread,
    /// or not at all when \a context is gone by then. At once when it is there and this is that
    /// thread. \a context must be alive during the call and stay on its thread; it may go at any
    /// time after.
    void whenFinished(QObject *context, std::function<void()> function);
    /// Calls \a function once the answer is there: on whichever thread completes it, right after,
    /// or at once when it is there already. \a function must return soon.
    void whenFinished(std::function<void()> function);

protected:
    /// Completes the answer after \a store ran under the mutex; does nothing when it is complete.
    void finish(const std::function<void()> &store);
    /// Runs \a load under the mutex.
    void read(const std::function<void()> &load) const;

private:
    mutable std::mutex m_mutex;
    /// Guarded by m_mutex.
    bool m_finished = false;
    /// There from the first one who waits. It is signalled outside the mutex, when those who
    /// waited may have let go of this already.
    mutable std::shared_ptr<std::condition_variable> m_condition;
    CMError m_error;
    FindServiceFault m_findServiceFault;
    std::vector<std::shared_ptr<CMContextCall>> m_watchers;
    std::vector<std::function<void()>> m_followers;
};

/// An answer that carries a T.
template <class T>
class CMReplyData : public CMReplyAbstractData {
public:
    /// Waits without limit, then returns a copy of the value; a default one after an error.
    virtual T value() const
    {
        waitForFinished();
        T copy {};
        read([this, &copy] { copy = m_value; });
        return copy;
    }
    /// Completes the answer.
    virtual void setValue(const QVariant &value)
    {
        finish([this, &value] { m_value = value.value<T>(); });
    }

private:
    T m_value {};
};

template <>
inline void CMReplyData<QVariant>::setValue(const QVariant &value)
{
    finish([this, &value] { m_value = value; });
}

/// The fault of a service that explains what an answer does not: why it is an error, or a screen
/// without rows. Empty for every other answer.
VESK_API VeskServiceFault CMUnexplainedFault(const CMReplyData<QVariant> &answer);

/// Keeps the promise that every answer is given: when the last one who could still answer lets go,
/// the answer ends with an error.
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
/// none. Keep a copy to answer later; letting go of the last copy answers with an error, so make
/// one from a CMReplyData and copy that one.
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
    /// To keep the data without the promise to answer; null when this is.
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

/// The answering side of an answer of which only success or failure matters. Does not own the data.
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
