// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/PluginThread.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "plugin/runtime/PluginApi.h"

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>
#include <exception>

VESK_LOGGER("Host")

namespace {

/// A thread that was started by a thread that was started by the plug-in's, and so on.
constexpr int MostGenerations = 8;

using WorkerCreate = void *(*)(const char *name, void *config);

QString loaderError()
{
    const char *text = ::dlerror();
    return text ? QString::fromLocal8Bit(text) : QStringLiteral("unknown error");
}

Result<WorkerCreate, QString> loadLibrary(const QString &file)
{
    // An absolute name, because dlopen() looks for a bare one in the system's folders. The library
    // is never unloaded: loggers, meta-objects and queued calls into it may outlive its worker.
    const QByteArray name = QFile::encodeName(QFileInfo(file).absoluteFilePath());
    void *library = ::dlopen(name.constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library)
        return failure(loaderError());
    void *symbol = ::dlsym(library, "worker_create");
    if (!symbol)
        return failure(loaderError());
    return reinterpret_cast<WorkerCreate>(symbol);
}

} // namespace

PluginThread::PluginThread(const QString &file, const QVariantHash &config)
    : m_file(file)
    , m_config(config)
    , m_storePath(CMPath::fromVariant(
          config.value(QStringLiteral("store")).toHash().value(QStringLiteral("path"))))
{
    setObjectName(QFileInfo(file).baseName());
}

PluginThread::~PluginThread()
{
    VESK_ASSERT(!isRunning());
}

PluginThread *PluginThread::homeOf(QThread *thread)
{
    // A thread's object lives on the thread that made it; the main thread's on the main thread.
    for (int generations = 0; thread && generations < MostGenerations; ++generations) {
        if (auto *home = qobject_cast<PluginThread *>(thread))
            return home;
        thread = thread->thread();
    }
    return nullptr;
}

void PluginThread::whenIdle(QObject *context, std::function<void()> done)
{
    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    answer->whenFinished(context, std::move(done));
    m_worker->post(CMSetDataRequest(
        m_worker->addPrefix(QString()), CMPingRole(), QVariant(), CMReply<QVariant>(answer)));
}

Result<std::unique_ptr<CMNodesWorker>, QString> PluginThread::createWorker()
{
    // A library's own initialization would be executed when it is loaded.
    if (auto checked = checkPluginApi(m_file); !checked)
        return failure(checked.error());
    const auto workerCreate = loadLibrary(m_file);
    if (!workerCreate)
        return failure(workerCreate.error());
    const QByteArray name = QFileInfo(m_file).baseName().toUtf8();
    try {
        std::unique_ptr<CMNodesWorker> worker(
            static_cast<CMNodesWorker *>((*workerCreate)(name.constData(), &m_config)));
        if (!worker)
            return failure(QStringLiteral("worker_create made no worker"));
        return worker;
    } catch (const std::exception &exception) {
        return failure(QString::fromLocal8Bit(exception.what()));
    } catch (...) {
        return failure(QStringLiteral("worker_create threw something"));
    }
}

void PluginThread::run()
{
    veskSetThreadName(objectName());
    auto created = createWorker();
    if (!created) {
        Q_EMIT loaded(CMPath(), created.error());
        return;
    }
    const std::unique_ptr<CMNodesWorker> worker = *std::move(created);
    m_worker = worker.get();
    Q_EMIT loaded(worker->addPrefix(QString()), QString());
    exec();
    VESK_DEBUG("unloading " << m_file);
}
