// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "plugin/supervision/PluginDescriptor.h"
#include "plugin/supervision/PluginStoreAccess.h"
#include "plugin/supervision/ReadSettings.h"

#include <QObject>
#include <QString>
#include <QVariantHash>

#include <functional>

/// One plug-in: a library and the worker that it creates, in this process or in one of its own.
/// Main thread, with an event loop.
///
/// A library exports `extern "C" void *worker_create(const char *name, void *config)`: config
/// points to a QVariantHash, the result is a CMNodesWorker as it came from `new`, or null.
///
/// When a setting changes that the plug-in has read and keeps (ReadSettings), the plug-in is
/// restarted once the settings have settled. From the change on, requests for its paths wait for
/// the new worker. Requests in progress are finished first, or, if they only read, by the new one.
class Plugin : public QObject {
    Q_OBJECT

public:
    explicit Plugin(const QString &file, QObject *parent = nullptr);
    /// Ends what still runs, and waits for it.
    ~Plugin() override;

    /// What the plug-in says of itself; before load().
    void setDescriptor(const PluginDescriptor &descriptor) { m_descriptor = descriptor; }

    /// Starts loading, once. Ends with loadFinished().
    virtual void load() = 0;
    /// Instead of load(): nothing of it is executed. Ends with loadFinished(), too.
    void refuse(const QString &reason);
    /// Ends the worker, after the request that it handles. Ends with unloaded(), at once when
    /// nothing runs.
    virtual void unload() = 0;
    virtual bool isRunning() const = 0;
    /// Whether its worker serves \a path.
    virtual bool serves(const CMPath &path) const = 0;

    /// Gives it a store, which must outlive it; before load().
    void setStore(PluginStoreAccess *store) { m_store = store; }
    /// Gives it a folder, which exists and which it may read; before load().
    void setFolder(const QString &folder) { m_folder = folder; }

    /// The settings that it has read, as far as they are known.
    ReadSettings &readSettings() { return m_readSettings; }

    /// Unloads a plug-in that is loaded but cannot be used.
    void reject(const QString &reason);

    const QString &file() const { return m_file; }
    const PluginDescriptor &descriptor() const { return m_descriptor; }
    /// The root path of the worker; empty unless it is loaded.
    const CMPath &root() const { return m_root; }
    /// Why it could not be loaded; empty otherwise.
    const QString &error() const { return m_error; }

Q_SIGNALS:
    void loadFinished();
    void unloaded();
    /// Requests from now on wait for a new worker.
    void restarting();
    /// A new worker serves the same paths, and knows nothing of what the former one was sent.
    void restarted();

protected:
    /// Has requests for the plug-in's own paths wait.
    virtual void holdRequests() = 0;
    /// Passes them to the worker after all.
    virtual void releaseRequests() = 0;
    /// Replaces the worker, if it runs.
    virtual void renew() = 0;
    void finishLoading(const CMPath &root, const QString &error);
    /// Calls \a start when the plug-in may be started: once what it wrote before is on the disk.
    /// Directly where there is nothing to wait for.
    void whenStartable(std::function<void()> start);
    /// \a config with the store and the folder, as far as it has them.
    QVariantHash completed(QVariantHash config) const;
    /// Null when it has none.
    PluginStoreAccess *store() const { return m_store; }

private:
    const QString m_file;
    PluginDescriptor m_descriptor;
    CMPath m_root;
    QString m_error;
    ReadSettings m_readSettings;
    PluginStoreAccess *m_store = nullptr;
    QString m_folder;
};
