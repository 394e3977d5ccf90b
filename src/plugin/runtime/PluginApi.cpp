// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/PluginApi.h"

#include "api/core/version.h"

QString apiProblem(int major, int minor)
{
    if (major == VESK_API_MAJOR && minor >= 0 && minor <= VESK_API_MINOR)
        return {};
    return QStringLiteral("it was built with version %1.%2 of the SDK, and this host has %3.%4")
        .arg(major)
        .arg(minor)
        .arg(VESK_API_MAJOR)
        .arg(VESK_API_MINOR);
}
