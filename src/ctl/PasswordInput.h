// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

/// The next line of \a input, without its end: not a byte more than that. What is too long is read
/// to its end, but kept only as far as needed to see that (1024 bytes).
QByteArray readInputLine(int input);

/// Reads a password, or returns why there is none. Where the descriptor \a input is a terminal, it
/// is asked for with \a prompt on the controlling terminal, without echo, and a signal that ends or
/// stops the process meanwhile finds the terminal as it was; else the next line of \a input is the
/// password. Changes signal handlers while it reads: one call at a time.
Result<QString, QString> readPassword(int input, const QString &prompt);
