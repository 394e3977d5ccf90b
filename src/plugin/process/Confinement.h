// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/confinement/CallFilter.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

/// Drops for good, for this thread and those that it starts, what a plug-in process does not need:
/// gaining privileges, writing and creating files, reading files other than those under \a readable
/// and what name look-ups, certificates and the loader need, starting processes, listening, and
/// more than a fair share of memory and descriptors; and without \a network sockets to the
/// internet. To be called while the process has one thread.
///
/// Returns what this kernel does not support, a line each.
QStringList confineProcess(const QList<QByteArray> &readable, bool network);

/// The system calls that are left to a plug-in process, as the last part of confineProcess(); and
/// for tests those of other architectures, which the filter of this one cannot show.
///
/// Where the C library makes the calls for sockets through one (i386), their families cannot be
/// told apart: with \a network, sockets of all families can be opened there.
std::unique_ptr<CallFilter> callsOfPluginProcesses(
    bool network, std::uint32_t architecture = SCMP_ARCH_NATIVE);
