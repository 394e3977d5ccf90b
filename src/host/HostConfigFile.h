// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QString>

struct HostOptions;

/// Reads a configuration file (JSON; its form is described in docs/host.md) into \a options. Files
/// that it names are relative to its own folder. An error names the file and the member; a member
/// that is not known is one, so that a misspelt one is noticed.
Result<void, QString> readHostConfigFile(const QString &file, HostOptions &options);
