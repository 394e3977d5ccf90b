// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/JsonRpc.h"

#include "api/web/VeskJson.h"

#include <cmath>

namespace {

JsonRpcRequest invalidRequest(const QVariant &id, int code, const QString &message)
{
    JsonRpcRequest request;
    request.id = id;
    request.isInvalid = true;
    request.error = {code, message, {}};
    return request;
}

bool isJsonType(const QVariant &value, std::initializer_list<int> types)
{
    for (const int type : types) {
        if (value.userType() == type)
            return true;
    }
    return false;
}

/// Whether it is written as it was read, although it may have been read as a double.
bool isKept(double number)
{
    constexpr double Limit = 9007199254740992.0; // 2^53
    if (number == std::trunc(number))
        return std::abs(number) < Limit;
    return QString::number(number, 'g', 15).toDouble() == number;
}

bool isId(const QVariant &value)
{
    if (isJsonType(value, {QMetaType::LongLong, QMetaType::Double}))
        return isKept(value.toDouble());
    return value.isNull() || value.userType() == QMetaType::QString;
}

JsonRpcRequest readRequest(const QVariant &value)
{
    if (value.userType() != QMetaType::QVariantHash) {
        return invalidRequest(
            {}, JsonRpcError::InvalidRequest, QStringLiteral("A request is an object."));
    }
    const QVariantHash object = value.toHash();
    const QVariant id = object.value(QStringLiteral("id"));
    const bool hasId = object.contains(QStringLiteral("id"));
    const QVariant method = object.value(QStringLiteral("method"));
    const QVariant params = object.value(QStringLiteral("params"));
    const auto invalid = [&](const QString &message) {
        return invalidRequest(isId(id) ? id : QVariant(), JsonRpcError::InvalidRequest, message);
    };

    if (hasId && !isId(id))
        return invalid(QStringLiteral("\"id\" is a string, a number that fits, or null."));
    const QVariant version = object.value(QStringLiteral("jsonrpc"));
    if (version.userType() != QMetaType::QString || version.toString() != QLatin1String("2.0"))
        return invalid(QStringLiteral("\"jsonrpc\" is \"2.0\"."));
    if (method.userType() != QMetaType::QString)
        return invalid(QStringLiteral("\"method\" is a string."));
    if (object.contains(QStringLiteral("params"))
        && !isJsonType(params, {QMetaType::QVariantHash, QMetaType::QVariantList}))
        return invalid(QStringLiteral("\"params\" is an object."));

    JsonRpcRequest request;
    request.method = method.toString();
    request.params = params.toHash();
    request.id = id;
    request.isNotification = !hasId;
    if (params.userType() == QMetaType::QVariantList && !params.toList().isEmpty()) {
        request.isInvalid = true;
        request.error = {JsonRpcError::InvalidParams,
            QStringLiteral("Parameters are given by name, in an object."), {}};
    }
    return request;
}

} // namespace

JsonRpcMessage parseJsonRpc(const QByteArray &bytes)
{
    VeskError error;
    const QVariant value = VeskJson::parse(bytes, error);
    if (!error.isEmpty())
        return {{invalidRequest({}, JsonRpcError::ParseError, QStringLiteral("This is no JSON."))},
            false};
    if (value.userType() != QMetaType::QVariantList)
        return {{readRequest(value)}, false};

    const QVariantList batch = value.toList();
    if (batch.isEmpty()) {
        return {{invalidRequest({}, JsonRpcError::InvalidRequest,
                    QStringLiteral("A batch holds at least one request."))},
            false};
    }
    if (batch.size() > JsonRpcMessage::MaxBatch) {
        return {{invalidRequest({}, JsonRpcError::InvalidRequest,
                    QStringLiteral("A batch holds at most %1 requests.")
                        .arg(JsonRpcMessage::MaxBatch))},
            false};
    }
    JsonRpcMessage message;
    message.isBatch = true;
    for (const QVariant &request : batch)
        message.requests.append(readRequest(request));
    return message;
}

QVariantHash jsonRpcResult(const QVariant &id, const QVariant &result)
{
    return {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")}, {QStringLiteral("id"), id},
        {QStringLiteral("result"), result}};
}

QVariantHash jsonRpcFailure(const QVariant &id, const JsonRpcError &error)
{
    QVariantHash object {
        {QStringLiteral("code"), error.code}, {QStringLiteral("message"), error.message}};
    if (!error.data.isEmpty())
        object.insert(QStringLiteral("data"), error.data);
    return {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")}, {QStringLiteral("id"), id},
        {QStringLiteral("error"), object}};
}

QByteArray jsonRpcNotification(const QString &method, const QVariant &params)
{
    return VeskJson::write(QVariantHash {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
        {QStringLiteral("method"), method}, {QStringLiteral("params"), params}});
}
