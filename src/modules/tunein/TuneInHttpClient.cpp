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

constexpr unsigned long CacheBytes = 1000000;
constexpr int MaxBodyBytes = 1000000;
constexpr int TimeoutMs = 30000;

const char RequestSignature[]
    = "CMError TuneInHttpClient::request(const VeskUrl&, QByteArray*, TuneInHttpClient::Type)";
const char CompletionSignature[]
    = "TuneInHttpClient::on_request(VeskUrl, int, int)::<lambda(const Result&)>";

CMError connectionError()
{
    const QString context = trExtractContext(RequestSignature);
    return CMError(TrString(context, QStringLiteral("Failed to connect to TuneIn")));
}

} // namespace

TuneInHttpClient::TuneInHttpClient()
    : m_httpClient(new HttpClient(this, HttpClient::Default, true))
{
    qRegisterMetaType<VeskUrl>("VeskUrl");
    m_httpClient->setCacheSize(CacheBytes);
}

TuneInHttpClient::~TuneInHttpClient()
{
    QThread::currentThread()->exit(0);
    endOwnThread();
}

/// The host's client has sockets and timers in the other thread's event loop, so it is destroyed
/// there, after the calls that are already queued. Its last completions run while this object's
/// members still exist.
void TuneInHttpClient::endOwnThread()
{
    QThread *const ownThread = thread();
    if (ownThread == QThread::currentThread() || !ownThread->isRunning())
        return;
    // Qt wakes the event loop after it has queued the call. Without the semaphore the call could
    // run, and end the thread, in between, and the wake-up would reach a loop that no longer
    // exists.
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
    // The wait below would keep the client's own event loop from ever running the exchange.
    VESK_ASSERT_TEXT(
        QThread::currentThread() != thread(), "called on another thread than the client's own");
    VESK_TRACE("Enter " << dbglog_scopedFunction(RequestSignature, "CB_TuneIn") << ": " << url);
    // Held until the wait, so that no result is stored, and no wake-up sent, before this waits.
    QMutexLocker lock(&m_mutex);
    const int index = m_nextIndex++;
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
    VESK_ASSERT_OWN_THREAD();
    HttpClientOptions options;
    options.setTimeoutMs(TimeoutMs);
    options.setReadSizeLimit(MaxBodyBytes);
    // The web API changes state and reads favorites by GET, with URLs that repeat.
    options.setUseCache(!TuneInApi::isPersonal(url));
    const auto done = [this, index](const HttpClientResult &result) { store(index, result); };
    if (type == Get)
        m_httpClient->get(url, options, done);
    else if (type == Post)
        m_httpClient->post(url, QByteArray(), options, done);
}

void TuneInHttpClient::store(int index, const HttpClientResult &result)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(CompletionSignature, "CB_TuneIn") << ": "
                        << result.url() << " " << result.status() << " " << result.code());
    QMutexLocker lock(&m_mutex);
    Request &request = m_requests[index];
    request.data = result.data();
    request.code = result.code();
    request.status = result.status();
    m_condition.wakeAll();
}
