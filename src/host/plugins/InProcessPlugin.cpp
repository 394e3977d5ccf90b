#include "host/plugins/InProcessPlugin.h"

#include "api/core/vesk.h"
#include "runtime/PluginThread.h"

InProcessPlugin::InProcessPlugin(const QString &file, const QVariantHash &config, QObject *parent)
    : Plugin(file, parent)
    , m_thread(std::make_unique<PluginThread>(file, config))
{
    connect(m_thread.get(), &PluginThread::loaded, this, &InProcessPlugin::finishLoading);
    veskConnect(m_thread.get(), &QThread::finished, this, &Plugin::unloaded);
}

InProcessPlugin::~InProcessPlugin()
{
    m_thread->quit();
    m_thread->wait();
}

void InProcessPlugin::load()
{
    m_thread->start();
}

void InProcessPlugin::unload()
{
    if (!isRunning()) {
        Q_EMIT unloaded();
        return;
    }
    // A thread that is still loading comes to its event loop first, and leaves it at once.
    m_thread->quit();
}

bool InProcessPlugin::isRunning() const
{
    return m_thread->isRunning();
}
