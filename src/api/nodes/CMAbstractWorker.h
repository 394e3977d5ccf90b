// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/nodes/CMRequest.h"

#include <QObject>
#include <QVariant>

/// Answers requests for the paths of a prefix. The root worker calls it from any thread, at any
/// time between its registration and its removal there; the calls must return soon and must not
/// wait for another thread.
class VESK_API CMAbstractWorker : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~CMAbstractWorker() override;

    /// Accepts \a request and returns; its reply is completed now or later. Any thread.
    virtual void request(CMRequest request) = 0;
    /// The same, but a worker of the calling thread handles it later, from its event loop, after
    /// everything that is queued already. Any thread.
    virtual void post(CMRequest request);
    /// \a path got its first subscriber; its last subscription ended. Any thread.
    virtual void connectChange(const CMPath &path);
    virtual void disconnectChange(const CMPath &path);
    /// The UI language changed: translated texts must be read again. Any thread.
    virtual void languageChanged();

    /// The value at \a path as a VeskValue's hash, or a null variant when there is none. Any
    /// thread. Blocks until the answer is there, at most 30 seconds, so a thread must not ask for a
    /// value that it would have to supply itself; this worker's own thread is answered directly.
    QVariant getValue(const CMPath &path);
};
