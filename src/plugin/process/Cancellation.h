// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMWorker.h"

#include <memory>
#include <vector>

/// Cuts the work on a cancelled request short: while the plug-in handles it, HTTP exchanges that
/// only read end at once, so that the plug-in gets to its next request. For a process with one
/// plug-in. Any thread.
class Cancellation : public CMWorker::HandlingListener {
public:
    Cancellation();
    ~Cancellation() override;
    Q_DISABLE_COPY(Cancellation)

    /// The request that \a reply belongs to was cancelled.
    void cancel(const std::shared_ptr<CMReplyAbstractData> &reply);

    void begin(const std::shared_ptr<CMReplyAbstractData> &reply) override;
    void end() override;

private:
    VeskMutex m_mutex;
    /// The requests being handled, each made by the handler of the one before it.
    std::vector<const CMReplyAbstractData *> m_handled VESK_GUARDED_BY(m_mutex);
    const CMReplyAbstractData *m_cancelled VESK_GUARDED_BY(m_mutex) = nullptr; ///< of m_handled
};
