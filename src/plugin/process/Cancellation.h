// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMWorker.h"

#include <memory>
#include <mutex>
#include <vector>

/// Frees the plug-in from work that is not wanted any more: while the request that it is handling
/// was taken back, its HTTP exchanges that only read end at once, so that it comes to the next
/// request. For a process with one plug-in. Any thread.
class Cancellation : public CMWorker::HandlingListener {
public:
    Cancellation();
    ~Cancellation() override;
    Q_DISABLE_COPY(Cancellation)

    /// The request that \a reply belongs to was taken back.
    void cancel(const std::shared_ptr<CMReplyAbstractData> &reply);

    void begin(const std::shared_ptr<CMReplyAbstractData> &reply) override;
    void end() override;

private:
    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::vector<const CMReplyAbstractData *> m_handled; ///< each made by the handler before it
    const CMReplyAbstractData *m_cancelled = nullptr; ///< one of m_handled
};
