// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

struct HostOptions;

/// A member of a configuration file. Lines count from 1; 0 where they are not known.
struct HostConfigMember {
    enum Shape { Value, List, Object };

    QString key;
    int line = 0;
    Shape shape = Value;
    /// The value, the list's, or a hash with one entry for each of the object's; with their lines.
    QVector<QPair<QVariant, int>> values;
};

/// What a configuration file says; docs/host.md describes its form.
struct HostConfigFile {
    QString file;
    QVector<HostConfigMember> members;
};

/// The file that is read when none is named: $XDG_CONFIG_HOME/vesk/vesk.conf, or ~/.config's, if it
/// is there, else machineHostConfigFile() if it is and may be read. Empty without one.
QString defaultHostConfigFile();

/// That of the machine's own host. It may hold an id or a password, so that packages let only that
/// host's user read it; the host of anybody else does without.
QString machineHostConfigFile();

/// Reads \a file: YAML, of which JSON is a part. Of untrusted content: it has at most 1 MiB, a few
/// levels and no aliases, and nothing but a regular file is opened. An error is one line that names
/// the file and the line in it. Never throws.
Result<HostConfigFile, QString> readHostConfigFile(const QString &file);

/// Which members are put into the options: the values, or everything else.
enum class HostConfigMembers { AllButValues, Values };

/// Puts the members of \a config into \a options. Files that they name are relative to the folder
/// of the configuration file. An error names file, line and member; a member that is not known is
/// one, so that a misspelt one is noticed.
Result<void, QString> applyHostConfig(
    const HostConfigFile &config, HostConfigMembers which, HostOptions &options);
