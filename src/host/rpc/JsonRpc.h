// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVector>

/// \file
/// The messages of JSON-RPC 2.0 as values: bytes in, requests out; results in, bytes out. Pure
/// functions, any thread.

/// Why a call failed, as it is sent to the client.
struct JsonRpcError {
    enum Code {
        ParseError = -32700,
        InvalidRequest = -32600,
        MethodNotFound = -32601,
        InvalidParams = -32602,
        InternalError = -32603,
        /// A node answered with an error; data holds its "name" and "title".
        RequestFailed = -32000,
        /// No node serves the path.
        NoNode = -32001,
        /// No answer came in time.
        TimedOut = -32002,
        /// The client has too many calls that wait for their answers.
        TooManyRequests = -32003,
        /// The row that was to be played is no longer in its screen.
        RowGone = -32004,
        /// The address changes something, and no list offered it.
        NotOffered = -32005,
        /// The client cancelled the request.
        Cancelled = -32006,
        /// The client's role does not allow it.
        NotAllowed = -32007,
    };

    int code = InternalError;
    QString message;
    QVariantHash data;
};

/// One call as the client sent it.
struct JsonRpcRequest {
    QString method;
    QVariantHash params;
    /// A string, a number or null; what the answer carries.
    QVariant id;
    /// No answer is wanted, not even an error.
    bool isNotification = false;
    /// The request cannot be carried out and is answered with `error`.
    bool isInvalid = false;
    JsonRpcError error;
};

/// One message: a call or a batch of them.
struct JsonRpcMessage {
    /// Most calls in one batch.
    static constexpr int MaxBatch = 50;

    QVector<JsonRpcRequest> requests;
    bool isBatch = false;
};

/// Never fails: what cannot be read becomes one invalid request. A message has at least one
/// request.
JsonRpcMessage parseJsonRpc(const QByteArray &bytes);

QVariantHash jsonRpcResult(const QVariant &id, const QVariant &result);
QVariantHash jsonRpcFailure(const QVariant &id, const JsonRpcError &error);
QByteArray jsonRpcNotification(const QString &method, const QVariant &params);
