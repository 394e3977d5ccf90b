// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "plugin/supervision/Plugin.h"

#include <QVariantHash>

#include <memory>

class PluginThread;
class PluginWatch;

/// A plug-in in this process, on a thread of its own: for tests and for debugging, because its
/// crash is the host's. It is restarted after it has handled all requests that were made before,
/// however long that takes.
class InProcessPlugin : public Plugin {
    Q_OBJECT

public:
    /// \a watch, which may be null, must outlive it.
    InProcessPlugin(const QString &file, const QVariantHash &config, PluginWatch *watch = nullptr,
        QObject *parent = nullptr);
    /// Waits without limit for the thread to end.
    ~InProcessPlugin() override;

    void load() override;
    void unload() override;
    bool isRunning() const override;
    bool serves(const CMPath &path) const override;
    /// Whether \a thread is the plug-in's.
    bool isOn(const PluginThread *thread) const { return m_thread.get() == thread; }

protected:
    void holdRequests() override;
    void releaseRequests() override;
    void renew() override;

private:
    /// Failed: it was loaded once, and could not be loaded again.
    enum class Phase { Idle, Loading, Running, Renewing, Failed, Ending };

    void startThread();
    void replaceThread();
    void onLoaded(const CMPath &root, const QString &error);
    void onFinished();

    const QVariantHash m_config;
    PluginWatch *const m_watch;
    Phase m_phase = Phase::Idle;
    std::unique_ptr<PluginThread> m_thread;
};
