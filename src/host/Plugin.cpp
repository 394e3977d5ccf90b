#include "host/Plugin.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/PluginThread.h"

VESK_LOGGER("Host")

Plugin::Plugin(const QString &file, const QVariantHash &config, QObject *parent)
    : QObject(parent)
    , m_file(file)
    , m_thread(std::make_unique<PluginThread>(file, config))
{
    veskConnect(m_thread.get(), &PluginThread::loaded, this, &Plugin::threadLoaded);
    veskConnect(m_thread.get(), &QThread::finished, this, &Plugin::unloaded);
}

Plugin::~Plugin()
{
    m_thread->quit();
    m_thread->wait();
}

void Plugin::load()
{
    m_thread->start();
}

void Plugin::unload()
{
    if (!isRunning()) {
        Q_EMIT unloaded();
        return;
    }
    // A thread that is still loading comes to its event loop first, and leaves it at once.
    m_thread->quit();
}

void Plugin::reject(const QString &reason)
{
    VESK_ERROR("plug-in " << m_file << " is not used: " << reason);
    m_root = CMPath();
    m_error = reason;
    unload();
}

bool Plugin::isRunning() const
{
    return m_thread->isRunning();
}

void Plugin::threadLoaded(const CMPath &root, const QString &error)
{
    m_root = root;
    m_error = error;
    if (error.isEmpty())
        VESK_INFO("plug-in " << m_file << " serves " << root);
    else
        VESK_ERROR("plug-in " << m_file << " cannot be loaded: " << error);
    Q_EMIT loadFinished();
}
