// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QString>

/// Why a plug-in that was built with this version of the SDK cannot run here; empty when it can. A
/// pure function.
QString apiProblem(int major, int minor);

/// Whether the library \a file can run here, by the note with which the SDK marks each library that
/// is built with it (api/core/apinote.h). Reads the file and executes nothing of it. Fails with the
/// reason. Blocks on nothing but the disk; any thread.
Result<void, QString> checkPluginApi(const QString &file);
