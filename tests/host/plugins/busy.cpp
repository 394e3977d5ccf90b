// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMUINode.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValue.h"
#include "api/web/HttpClient.h"

#include <QThread>

#include <future>

// A plug-in whose worker thread blocks until a web service has answered; the client has a thread of
// its own.
namespace {

class HttpThread : public QThread {
public:
    HttpThread()
    {
        start();
        m_ready.get_future().wait();
    }
    ~HttpThread() override
    {
        quit();
        wait();
    }

    HttpClientStatus get(const QString &url)
    {
        std::promise<HttpClientStatus> ended;
        QMetaObject::invokeMethod(m_client, [&] {
            m_client->get(VeskUrl(url), {},
                [&](const HttpClientResult &result) { ended.set_value(result.status()); });
        });
        return ended.get_future().get();
    }

protected:
    void run() override
    {
        HttpClient client(nullptr, HttpClient::Default, true);
        m_client = &client;
        m_ready.set_value();
        exec();
    }

private:
    HttpClient *m_client = nullptr;
    std::promise<void> m_ready;
};

class WaitingNode : public CMUINode {
public:
    WaitingNode(const CMPath &path, HttpThread &http)
        : CMUINode(path)
        , m_http(http)
    {
    }

    bool getDataRequest(const CMGetDataRequest &request) override
    {
        const VeskValue url(CMRoot()->getValue(VeskTuneInBrowseIndexUrlPath()).toHash());
        const auto status = static_cast<int>(m_http.get(url.string_()));
        request.reply().setValue(QVariantList {status});
        return true;
    }

private:
    HttpThread &m_http;
};

class BusyWorker : public CMNodesWorker {
public:
    explicit BusyWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("Busy"))
    {
        (new WaitingNode(addPrefix(QString()), m_http))->setNodes(nodes());
    }
    ~BusyWorker() override { stop(); }

private:
    HttpThread m_http;
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new BusyWorker(*static_cast<const QVariantHash *>(config));
}
