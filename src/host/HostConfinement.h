// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/confinement/CallFilter.h"

#include <QStringList>

#include <cstdint>
#include <memory>

/// Gives up, for this process and for all that it starts, what playing radio never needs: new
/// privileges, core files, and system calls that rule other processes, the machine or the kernel.
/// Call it while the process has one thread.
///
/// This is a list of refused calls. A list of allowed ones, as plug-ins' processes have, would have
/// to foresee what the machine's sound libraries do in this process, in any version, and a miss
/// there is a device without sound. Code that parses bytes from outside runs in processes of its
/// own, which confine themselves further; this list lets them.
///
/// Returns what this kernel does not offer, a line each.
QStringList confineHost();

/// The part of it that is about system calls; and for tests that of other architectures. Where the
/// C library makes the calls for sockets through one (i386), no family of them is refused.
std::unique_ptr<CallFilter> callsOfHosts(std::uint32_t architecture = SCMP_ARCH_NATIVE);
