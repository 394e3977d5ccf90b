// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInHttpClient.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "modules/tunein/NewQThread.h"
#include "modules/tunein/TuneInApi.h"

#include <QMetaObject>
#include <QMutexLocker>
#include <QSemaphore>
#include <QThread>

VESK_LOGGER("CB_TuneIn")

namespace {

constexpr unsigned long cacheBytes = 1000000;
constexpr int maxBodyBytes = 1000000;
constexpr int timeoutMs = 30000;

const char requestSignature[]
    = "CMError TuneInHttpClient::request(const VeskUrl&, QByteArray*, TuneInHttpClient::Type)";
const char completionSignature[]
    = "TuneInHttpClient::on_request(VeskUrl, int, int)::<lambda(const Result&)>";

CMError connectionError()
{
    const QString context = trExtractContext(requestSignature);
    return CMError(TrString(context, QStringLiteral("Failed to connect to TuneIn")));
}

} // namespace

TuneInHttpClient::TuneInHttpClient()
    : m_httpClient(new HttpClient(this, HttpClient::Default, true))
{
    qRegisterMetaType<VeskUrl>("VeskUrl");
    m_httpClient->setCacheSize(cacheBytes);
}

TuneInHttpClient::~TuneInHttpClient()
{
    QThread::currentThread()->exit(0);
    endOwnThread();
}

/// The host's client has sockets and timers in the other thread's event loop, so it is destroyed
/// there, after what was already queued; its last completions find this object's members alive.
void TuneInHttpClient::endOwnThread()
{
    QThread *const ownThread = thread();
    if (ownThread == QThread::currentThread() || !ownThread->isRunning())
        return;
    // Qt wakes the loop after it has queued the call: the loop must still be there then.
    QSemaphore queued;
    QMetaObject::invokeMethod(
        m_httpClient,
        [client = m_httpClient, &queued] {
            queued.acquire();
            delete client;
            QThread::currentThread()->exit(0);
        },
        Qt::QueuedConnection);
    queued.release();
    joinNewQThread(ownThread);
}

CMError TuneInHttpClient::get(const VeskUrl &url, QByteArray *out)
{
    return request(url, out, Get);
}

CMError TuneInHttpClient::post(const VeskUrl &url, QByteArray *out)
{
    return request(url, out, Post);
}

CMError TuneInHttpClient::request(const VeskUrl &url, QByteArray *out, TuneInHttpClient::Type type)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(requestSignature, "CB_TuneIn") << ": " << url);
    QMutexLocker lock(&m_mutex);
    const int index = m_nextIndex++;
    // The wait below would keep the client's own event loop from ever running the exchange.
    VESK_ASSERT_TEXT(
        QThread::currentThread() != thread(), "called on another thread than the client's own");
    QMetaObject::invokeMethod(this, "on_request", Qt::QueuedConnection, Q_ARG(VeskUrl, url),
        Q_ARG(int, type), Q_ARG(int, index));
    while (!m_requests.contains(index))
        m_condition.wait(&m_mutex);
    const Request result = m_requests.take(index);
    if (result.status != HttpClientStatus::Success)
        return connectionError();
    if (out)
        *out = result.data;
    return CMError();
}

void TuneInHttpClient::on_request(VeskUrl url, int type, int index)
{
    HttpClientOptions options;
    options.setTimeoutMs(timeoutMs);
    options.setReadSizeLimit(maxBodyBytes);
    options.setUseCache(!TuneInApi::isPersonal(url));
    VESK_ASSERT_OWN_THREAD();
    const auto done = [this, index](const HttpClientResult &result) { store(index, result); };
    if (type == Get)
        m_httpClient->get(url, options, done);
    else if (type == Post)
        m_httpClient->post(url, QByteArray(), options, done);
}

void TuneInHttpClient::store(int index, const HttpClientResult &result)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(completionSignature, "CB_TuneIn") << ": "
                        << result.url() << " " << result.status() << " " << result.code());
    QMutexLocker lock(&m_mutex);
    Request &request = m_requests[index];
    request.data = result.data();
    request.code = result.code();
    request.status = result.status();
    m_condition.wakeAll();
}
