#pragma once

#include "host/plugins/Plugin.h"

#include <QVariantHash>

#include <memory>

class PluginThread;

/// A plug-in in this process, on a thread of its own: for tests and for debugging, because what
/// ends it ends the host.
class InProcessPlugin : public Plugin {
    Q_OBJECT

public:
    InProcessPlugin(const QString &file, const QVariantHash &config, QObject *parent = nullptr);
    /// Waits without limit for the thread to end.
    ~InProcessPlugin() override;

    void load() override;
    void unload() override;
    bool isRunning() const override;

private:
    const std::unique_ptr<PluginThread> m_thread;
};
