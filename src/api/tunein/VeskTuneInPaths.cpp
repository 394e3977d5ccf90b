// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInPaths.h"

CMPath VeskTuneInPartnerIdPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("tunein/partnerId"));
    return path;
}

CMPath VeskTuneInBrowseIndexUrlPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("tunein/browseIndexUrl"));
    return path;
}

CMPath VeskTuneInSupportedStreamsPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("tunein/supportedStreams"));
    return path;
}

CMPath VeskTuneInEnabledFixItWizardPath()
{
    static const CMPath path(
        QStringLiteral("settings"), QStringLiteral("tunein/enabledFixItWizard"));
    return path;
}

CMPath VeskTuneInStateChangePath()
{
    static const CMPath path(QStringLiteral("player"), QStringLiteral("tunein/stateChange"));
    return path;
}
