// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/support/WorkerThread.h"

#include <QByteArray>
#include <QList>

#include <chrono>
#include <future>

/// A client that sends exactly the bytes of a test: a blocking socket to a loopback port with
/// time-outs of ten seconds. For threads other than the server's.
class RawClient {
public:
    /// From \a source, an IPv4 address of this machine; null lets the system choose.
    explicit RawClient(quint16 port, const char *source = nullptr);
    ~RawClient();
    RawClient(const RawClient &) = delete;
    RawClient &operator=(const RawClient &) = delete;

    /// False when the server has closed the connection.
    bool send(const QByteArray &bytes);
    /// Shuts down the sending side.
    void finishSending();
    /// One response: the head, and the body that its Content-Length announces; less when the
    /// connection ends early.
    QByteArray readResponse();
    /// Exactly \a count bytes, fewer at the end of the connection.
    QByteArray read(int count);
    /// Everything until the server closes the connection.
    QByteArray readAll();

    /// Connects, sends, returns the response.
    static QByteArray exchange(quint16 port, const QByteArray &request);
    /// A request with a valid Host header; \a headers end with "\r\n" each.
    static QByteArray request(const QByteArray &method, const QByteArray &target, quint16 port,
        const QByteArray &headers = {}, const QByteArray &body = {});
    static QByteArray rpc(quint16 port, const QByteArray &body);

private:
    bool receive();

    int m_socket;
    QByteArray m_buffer;
};

/// "HTTP/1.1 200 OK" gives 200.
int statusOf(const QByteArray &response);
QByteArray headerOf(const QByteArray &response, const QByteArray &name);
QByteArray bodyOf(const QByteArray &response);

/// Runs \a function on a thread of its own while the calling thread's event loop runs.
template <class Function>
auto inBackground(Function function)
{
    auto result = std::async(std::launch::async, function);
    const bool ended = spinUntil(
        [&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
        60000);
    if (!ended)
        abort();
    return result.get();
}
