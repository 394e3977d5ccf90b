#pragma once

#include "api/values/CMPath.h"

#include <QObject>
#include <QString>
#include <QVariantHash>

#include <memory>

class PluginThread;

/// One plug-in: a library, the worker that it makes, and the thread on which that worker lives from
/// its creation to its end. Used on the main thread, with an event loop.
///
/// A library offers `extern "C" void *worker_create(const char *name, void *config)`: config points
/// to a QVariantHash, the answer is a CMNodesWorker as it came from `new`, or null.
class Plugin : public QObject {
    Q_OBJECT

public:
    Plugin(const QString &file, const QVariantHash &config, QObject *parent = nullptr);
    /// Unloads and waits without limit for the thread to end.
    ~Plugin() override;

    /// Starts loading, once; loadFinished() tells the outcome.
    void load();
    /// Ends the worker and its thread; unloaded() tells when that is done, at once when nothing
    /// runs. A worker that is busy is ended when it is done.
    void unload();

    /// Unloads a plug-in that is loaded but cannot be used.
    void reject(const QString &reason);

    const QString &file() const { return m_file; }
    bool isRunning() const;
    /// The root path of the worker; empty unless it is loaded.
    const CMPath &root() const { return m_root; }
    /// Why it could not be loaded; empty otherwise.
    const QString &error() const { return m_error; }

Q_SIGNALS:
    void loadFinished();
    void unloaded();

private:
    void threadLoaded(const CMPath &root, const QString &error);

    const QString m_file;
    const std::unique_ptr<PluginThread> m_thread;
    CMPath m_root;
    QString m_error;
};
