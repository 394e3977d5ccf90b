// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QString>
#include <QVariantHash>

struct HostOptions;

/// The members of a configuration file (JSON; its form is described in docs/host.md).
Result<QVariantHash, QString> readHostConfigFile(const QString &file);

/// Which members are put into the options: the values, or everything else.
enum class HostConfigMembers { AllButValues, Values };

/// Puts \a members of \a file into \a options. Files that they name are relative to the folder of
/// the configuration file. An error names the file and the member; a member that is not known is
/// one, so that a misspelt one is noticed.
Result<void, QString> applyHostConfig(const QVariantHash &members, const QString &file,
    HostConfigMembers which, HostOptions &options);
