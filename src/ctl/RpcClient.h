// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostTransport.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

/// How a call ended.
struct RpcAnswer {
    enum Kind {
        Result, ///< `result` holds it.
        Error, ///< The host answered with an error.
        NoHost, ///< No answer, or not from a host.
        Refused, ///< A host that `refusal` is about: it has not heard, or not taken, the call.
    };

    /// Error codes: the row to play is not in the list any more; an address that changes something
    /// was not offered by a list; only owners may do that.
    static constexpr int EntryGone = -32004;
    static constexpr int NotOffered = -32005;
    static constexpr int NotAllowed = -32007;

    Kind kind = NoHost;
    QVariant result;
    /// Why there is no result.
    QString message;
    /// Error: its code, and its name and title, empty where the host gave none.
    int code = 0;
    QString name;
    QString title;
    /// The host's explanation when the service could not be asked; else empty.
    QString problem;
    /// Refused: why, and the fingerprint of the host's certificate; empty without TLS.
    HostRefusal refusal = HostRefusal::None;
    QString fingerprint;
};

/// Calls a host's methods over one WebSocket, opened by the first call; each call waits for its
/// answer. A call after the connection was lost opens another one. One thread, whose GLib context
/// it iterates while it waits.
class RpcClient {
public:
    /// Longer messages, in bytes, close the connection.
    static constexpr int MaxAnswer = 64 * 1024 * 1024;
    /// When setSlow()'s function is called.
    static constexpr int SlowMs = 3000;

    using Notified = std::function<void(const QString &method, const QVariantHash &params)>;
    using Answered = std::function<void(const RpcAnswer &answer)>;

    /// \a host is an http or https address that ends with "/".
    explicit RpcClient(const QString &host, const HostAccess &access = {});
    ~RpcClient();

    RpcAnswer call(const QString &method, const QVariantHash &params);

    /// Sends a call without waiting. \a answered is called by waitForAnswers(), in the order in
    /// which answers arrive; it may send() more, but not call().
    void send(const QString &method, const QVariantHash &params, Answered answered);
    /// Waits until all calls that were sent are answered, or \a enough returns true, which is
    /// called after each answer and after SlowMs; the calls that are left are then cancelled.
    void waitForAnswers(const std::function<bool()> &enough = {});

    /// \a slow is called when a call has waited for SlowMs. It must not call() itself.
    void setSlow(std::function<void()> slow);
    /// \a notified is called by waitUntil() for each notification since the last answer. It must
    /// not call() itself.
    void setNotified(Notified notified);
    /// Waits until \a done returns true, which is called after each notification; false when the
    /// connection is lost first.
    bool waitUntil(const std::function<bool()> &done);
    /// Whether the connection of the last call is still there.
    bool isConnected() const;
    /// Closes the connection; a call() or waitUntil() under way returns.
    void close();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
