// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "api/web/HttpClient.h"
#include "api/web/VeskUrl.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QObject>
#include <QWaitCondition>

/// The plug-in's one HTTP client: lives on a thread of its own that runs an event loop, and serves
/// callers on all other threads, which block until their response has arrived. An exchange takes at
/// most 30 seconds and returns at most 1,000,000 bytes.
///
/// Create it with createInNewQThread and delete it on the thread that did, while no other thread is
/// inside a call. Deleting it ends its thread, and the event loop of the thread that deletes it.
class TuneInHttpClient : public QObject {
    Q_OBJECT

public:
    enum Type { Get = 0, Post = 1 };

    TuneInHttpClient();
    ~TuneInHttpClient() override;

    /// Performs one exchange. Success returns an empty error and puts the body into \a out (which
    /// may be null); any failure below HTTP returns the same error and leaves \a out unchanged.
    /// A POST has an empty body. Any thread but the client's own, where it is a failed assertion:
    /// the exchange needs that thread's event loop.
    CMError request(const VeskUrl &url, QByteArray *out, TuneInHttpClient::Type type);
    CMError get(const VeskUrl &url, QByteArray *out);
    CMError post(const VeskUrl &url, QByteArray *out);

private Q_SLOTS:
    void on_request(VeskUrl url, int type, int index);

private:
    /// A result that its caller has not collected yet.
    struct Request {
        int code = 0;
        HttpClientStatus status = HttpClientStatus::Success;
        QByteArray data;
    };

    void store(int index, const HttpClientResult &result);
    void endOwnThread();

    HttpClient *m_httpClient;
    QMutex m_mutex;
    /// Wakes every waiting caller: each looks for its own index.
    QWaitCondition m_condition;
    // Guarded by m_mutex.
    int m_nextIndex = 0;
    QHash<int, Request> m_requests; ///< by index
};
