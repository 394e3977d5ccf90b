// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

#include <QString>

/// What holds for every command.
struct CtlOptions {
    /// Ends with "/".
    QString host = QStringLiteral("http://127.0.0.1:8765/");
    bool json = false;
    /// The service that is meant; empty for the only one that there is.
    CMPath service;
};
