// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMAbstractWorker.h"

#include <QVariantHash>

#include <memory>

class CMWorkerInbox;

/// A worker with a name, which is the prefix of its paths, and a thread of its own: the one that
/// created it. Requests from other threads are queued in its inbox and handled by that thread's
/// event loop one after another; a request from its own thread is handled at once. Requests that
/// are still queued when it is destroyed are answered with an error.
///
/// Registers itself at the root for as long as it lives. Create and destroy it on its thread; never
/// destroy it while it handles a request.
class VESK_API CMWorker : public CMAbstractWorker {
    Q_OBJECT

public:
    CMWorker(const QVariantHash &config, const QString &name);
    ~CMWorker() override;

    const QString &name() const { return m_name; }
    const QVariantHash &config() const { return m_config; }
    /// The path under this worker's root for \a relativePath, in its text form without prefix:
    /// "browse/uri/Search.ashx?query=aa1".
    CMPath addPrefix(const QString &relativePath) const;

    void request(CMRequest request) override;
    void post(CMRequest request) override;
    void connectChange(const CMPath &path) override;
    void disconnectChange(const CMPath &path) override;
    void languageChanged() override;

    /// Adds and removes a route to this worker for \a path, which has another worker's prefix.
    /// Worker's thread.
    void addForeignPath(const CMPath &path);
    void removeForeignPath(const CMPath &path);

    /// Is called for each request that a worker of this process handles: begin() before its handler
    /// (with the reply's data, null when the request wants no reply), end() after it, on the
    /// worker's thread. Nested where a handler asks its own worker. A listener gets the requests
    /// that begin after it was added, and must exist until the last of them has ended.
    class HandlingListener {
    public:
        virtual ~HandlingListener();
        virtual void begin(const std::shared_ptr<CMReplyAbstractData> &reply) = 0;
        virtual void end() = 0;
    };
    static void addHandlingListener(HandlingListener *listener);
    static void removeHandlingListener(HandlingListener *listener);

    /// Answers a sign-of-life request: the value it came with. Worker's thread.
    virtual void ping(const CMSetDataRequest &request);
    /// Writes what the worker is doing to the log, at DEBUG. Worker's thread.
    virtual void trace();

protected:
    /// Answers on the worker's thread; false when the request is not for this worker.
    virtual bool handleRequest(const CMRequest &request) = 0;
    /// From the event loop of the worker's thread.
    virtual void handleConnectChange(const CMPath &path) = 0;
    virtual void handleDisconnectChange(const CMPath &path) = 0;
    virtual void handleLanguageChanged();
    /// Unregisters from the root and empties the inbox: what is queued is answered with an error.
    /// For destructors of derived classes whose members must not be called any more.
    void stop();

private:
    friend class CMWorkerInbox;
    void deliver(const CMRequest &request);

    const QVariantHash m_config;
    const QString m_name;
    std::unique_ptr<CMWorkerInbox> m_inbox;
};

/// Role of the set-data request to a worker's root that ping() answers.
VESK_API const QString &CMPingRole();
