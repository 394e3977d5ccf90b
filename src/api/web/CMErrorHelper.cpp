// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/CMErrorHelper.h"

namespace {

const char *messageFor(CURLcode code)
{
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return QT_TRANSLATE_NOOP("CMErrorHelper", "The address of %1 was not found.");
    case CURLE_COULDNT_CONNECT:
        return QT_TRANSLATE_NOOP("CMErrorHelper", "Could not connect to %1.");
    case CURLE_OPERATION_TIMEDOUT:
        return QT_TRANSLATE_NOOP("CMErrorHelper", "%1 did not answer in time.");
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
        return QT_TRANSLATE_NOOP("CMErrorHelper", "No secure connection to %1 could be made.");
    default:
        return QT_TRANSLATE_NOOP("CMErrorHelper", "The exchange with %1 failed.");
    }
}

} // namespace

CMError CMErrorHelper::create(CURLcode code, const VeskUrl &url, const QString &service)
{
    const int number = static_cast<int>(code);
    const QString &name = service.isEmpty() ? url.host() : service;
    CMError error(TrString(QStringLiteral("CMErrorHelper"), QString::fromLatin1(messageFor(code)),
        QString(), -1, {TrArg(name)}));
    error.insert(CMError::Name(), CMError::DefaultName() + QStringLiteral(":curl-%1").arg(number));
    error.insert(QStringLiteral("curlCode"), number);
    return error;
}
