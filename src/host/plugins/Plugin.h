#pragma once

#include "api/values/CMPath.h"
#include "host/plugins/PluginDescriptor.h"

#include <QObject>
#include <QString>

/// One plug-in: a library and the worker that it makes, in this process or in one of its own. Used
/// on the main thread, with an event loop.
///
/// A library offers `extern "C" void *worker_create(const char *name, void *config)`: config points
/// to a QVariantHash, the answer is a CMNodesWorker as it came from `new`, or null.
class Plugin : public QObject {
    Q_OBJECT

public:
    explicit Plugin(const QString &file, QObject *parent = nullptr);
    /// Ends what still runs, and waits for it.
    ~Plugin() override;

    /// Starts loading, once; loadFinished() tells the outcome.
    virtual void load() = 0;
    /// Ends the worker; unloaded() tells when that is done, at once when nothing runs. A worker
    /// that is busy is ended when it is done.
    virtual void unload() = 0;
    virtual bool isRunning() const = 0;

    /// Unloads a plug-in that is loaded but cannot be used.
    void reject(const QString &reason);

    const QString &file() const { return m_file; }
    /// What the file beside the library says; empty without one.
    const PluginDescriptor &descriptor() const { return m_descriptor; }
    /// Why that file is not used; empty otherwise.
    const QString &descriptorError() const { return m_descriptorError; }
    /// The root path of the worker; empty unless it is loaded.
    const CMPath &root() const { return m_root; }
    /// Why it could not be loaded; empty otherwise.
    const QString &error() const { return m_error; }

Q_SIGNALS:
    void loadFinished();
    void unloaded();

protected:
    void finishLoading(const CMPath &root, const QString &error);

private:
    const QString m_file;
    QString m_descriptorError; ///< before the next, which fills it in
    const PluginDescriptor m_descriptor;
    CMPath m_root;
    QString m_error;
};
