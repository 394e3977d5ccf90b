// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QString>

class Command;

/// The script that completes the options of \a program in \a shell ("bash", "zsh" or "fish"), for
/// programs without commands. A failure for another shell. Pure; one thread.
Result<QString, QString> completionScript(const Command &program, const QString &shell);
