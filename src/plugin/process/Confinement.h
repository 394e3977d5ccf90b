// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// Gives up, for good and for all threads that are started from now on, what a plug-in's process
/// does not need: new privileges, writing and creating files, reading others than those under \a
/// readable and what name look-ups, certificates and the loader need, starting processes,
/// listening, and more than a fair share of memory and descriptors. Call it while the process has
/// one thread.
///
/// Returns what this kernel does not offer, a line each.
QStringList confineProcess(const QList<QByteArray> &readable);
