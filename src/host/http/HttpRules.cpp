// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpRules.h"

#include <QList>

bool isLoopbackHost(const QByteArray &host, quint16 port)
{
    QByteArray name = host.toLower();
    const QByteArray portSuffix = ":" + QByteArray::number(port);
    if (name.endsWith(portSuffix))
        name.chop(portSuffix.size());
    return name == "127.0.0.1" || name == "localhost" || name == "[::1]";
}

bool isSameOrigin(const QByteArray &origin, const QByteArray &host)
{
    return origin.toLower() == "http://" + host.toLower();
}

bool isJsonContentType(const QByteArray &contentType)
{
    return contentType.split(';').first().trimmed().toLower() == "application/json";
}
