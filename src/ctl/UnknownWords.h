// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/cli/CommandLine.h"

#include <QString>
#include <QStringList>

/// Names the first of \a arguments that stands where \a program wants a command, or looks like an
/// option, and is none; with the one that is most like it, if any is. Empty when there is no such
/// word. A pure function.
QString complainOfUnknownWord(const Command &program, const QStringList &arguments);

/// The one of \a candidates that \a word was probably meant to be; empty when none is like it.
QString nearest(const QString &word, const QStringList &candidates);
