// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskValuePaths.h"

#include "api/values/VeskHash.h"

CMPath VeskChildElementsInSingleListPath()
{
    static const CMPath path(
        QStringLiteral("settings"), QStringLiteral("browser/childElementsInSingleList"));
    return path;
}

CMPath VeskUILanguagePath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("ui/language"));
    return path;
}

CMPath VeskSystemMemberIdPath()
{
    static const CMPath path(QStringLiteral("system"), QStringLiteral("memberId"));
    return path;
}

CMPath VeskNetworkStateEthernetMAC()
{
    static const CMPath path(QStringLiteral("network"), QStringLiteral("ethernet/mac"));
    return path;
}

CMPath VeskNetworkStateConnected()
{
    static const CMPath path(QStringLiteral("network"), QStringLiteral("connected"));
    return path;
}

VESK_KEY(VeskService_Id, "serviceId")
