// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

struct HostOptions;

/// Reads a configuration file (JSON; its form is described in docs/host.md) into \a options. Files
/// that it names are relative to its own folder. Returns what is wrong, empty when nothing is; a
/// name that is not known is wrong, so that a misspelt one is noticed.
QString readHostConfigFile(const QString &file, HostOptions &options);
