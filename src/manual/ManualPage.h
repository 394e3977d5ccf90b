// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QString>

class Command;

/// \file
/// Manual pages (mdoc) of a hand-written part, in docs/man, and of what the program's own options
/// say. Pure functions; one thread.

/// \a part with the lines that stand for what is generated replaced:
///
/// | line | |
/// |---|---|
/// | `@synopsis@` | how the program is called, with all options |
/// | `@options@` | its options |
/// | `@commands@` | the commands, with their options and arguments |
/// | `@keys@` | the members of the host's configuration file |
/// | `@values@` | the host's values |
///
/// A failure when there is another one.
Result<QString, QString> manualPage(const QString &part, const Command &program);
