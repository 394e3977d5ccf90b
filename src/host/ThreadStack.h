// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringList>

#include <pthread.h>

/// \file
/// The stack of another thread of this process, for the log. Slow; one call at a time.

/// To be called once, early, when there is a thread whose stack may be asked for: the first
/// unwinding loads a library.
void prepareThreadStacks();

/// The calls that \a thread is in, innermost first, a line each: function, library or program with
/// the offset in it (which addr2line takes) and, in a build with debug information, source and
/// line. Interrupts the thread with SIGUSR2. Empty when it takes no signal: it waits in the kernel.
QStringList stackOfThread(pthread_t thread);
