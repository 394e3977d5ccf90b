// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringList>

/// Gives up, for this process and for all that it starts, what playing radio never needs: new
/// privileges, core files, and system calls that rule other processes, the machine or the kernel.
/// Call it while the process has one thread.
///
/// The calls are a list of refused ones. A list of allowed ones, as plug-ins' processes have, would
/// have to foresee what a sound system's libraries do in this process, the machine's own, of any
/// version, and a miss there is a device without sound. What meets bytes from outside with more
/// than this list between it and the machine runs in processes that confine themselves further,
/// which this list lets them do.
///
/// Returns what this kernel does not offer, a line each.
QStringList confineHost();
