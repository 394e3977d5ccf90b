// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/nodes/CMRequest.h"

#include <QObject>
#include <QVariant>

/// Something that answers requests for the paths of a prefix. What the root worker calls here, it
/// calls from any thread, and at any time from its registration there to its removal; the call must
/// return soon and must not wait for another thread.
class VESK_API CMAbstractWorker : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~CMAbstractWorker() override;

    /// Takes \a request and returns; its reply is completed now or later. Any thread.
    virtual void request(CMRequest request) = 0;
    /// The same, but a worker of the calling thread takes it up later, from its event loop, after
    /// everything that waits there already. Any thread.
    virtual void post(CMRequest request);
    /// The first subscriber of \a path came, the last one went. Any thread.
    virtual void connectChange(const CMPath &path);
    virtual void disconnectChange(const CMPath &path);
    /// The UI language changed: what depends on it is to be read again. Any thread.
    virtual void languageChanged();

    /// The value at \a path as a VeskValue's hash, or a null variant when there is none. Any
    /// thread; waits for the answer, at most 30 seconds, so the thread that would have to give it
    /// must not ask: this worker's own thread is answered directly.
    QVariant getValue(const CMPath &path);
};
