// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostSession.h"

#include <QByteArray>

/// \file
/// Files that users name. One thread.

/// The content of an ordinary file of at most 1 MiB, or why it cannot be had.
Result<QByteArray, QString> readFile(const QString &name);
/// Writes a file, whole or not at all, and tells the user.
CtlResult<> saveFile(HostSession &session, const QString &name, const QByteArray &content);
