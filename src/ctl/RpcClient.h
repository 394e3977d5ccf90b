// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

/// How a call ended.
struct RpcAnswer {
    enum Kind {
        Result, ///< `result` holds it.
        Error, ///< The host answered with an error.
        NoHost, ///< Nobody answered, or not a host.
    };

    /// Codes of errors: the row that was to be played is not in the list any more; an address that
    /// changes something was not offered by a list.
    static constexpr int EntryGone = -32004;
    static constexpr int NotOffered = -32005;

    Kind kind = NoHost;
    QVariant result;
    /// Why there is no result.
    QString message;
    /// Error: its code, and its name and title, empty where the host gave none.
    int code = 0;
    QString name;
    QString title;
    /// What the host says of the service that could not answer; empty where that is not the reason.
    QString problem;
};

/// Calls a host's methods over one WebSocket, opened by the first call; each call waits for its
/// answer. A call after the connection broke opens another one. One thread, whose GLib context it
/// runs while it waits.
class RpcClient {
public:
    /// Longest message that is taken, in bytes.
    static constexpr int MaxAnswer = 64 * 1024 * 1024;
    /// An answer that takes longer is slow.
    static constexpr int SlowMs = 3000;

    using Notified = std::function<void(const QString &method, const QVariantHash &params)>;

    /// \a host is an http address that ends with "/".
    explicit RpcClient(const QString &host);
    ~RpcClient();

    RpcAnswer call(const QString &method, const QVariantHash &params);

    /// Called when a call waits for its answer for SlowMs. Must not call.
    void setSlow(std::function<void()> slow);
    /// Called by waitUntil() for each notification since the last call was answered. Must not call.
    void setNotified(Notified notified);
    /// Waits until \a done says so, which is asked after each notification; false when the
    /// connection breaks before.
    bool waitUntil(const std::function<bool()> &done);
    /// Ends the connection, and whatever waits for something from it.
    void close();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
