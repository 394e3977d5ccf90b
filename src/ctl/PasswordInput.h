// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <ostream>

/// Reads a password from the descriptor \a input: asked for with \a prompt, without echo, when that
/// is a terminal; else its next line. A signal that ends or stops the process meanwhile finds the
/// terminal as it was. Returns why there is none; empty when \a password holds one. Changes signal
/// handlers while it reads: one call at a time.
QString readPassword(int input, std::ostream &prompts, const QString &prompt, QString &password);
