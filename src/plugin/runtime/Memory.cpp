// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/Memory.h"

#include <malloc.h>

void setUpMemory()
{
#ifdef M_ARENA_MAX // glibc's
    // Without fastbins, freed blocks are merged at once. With them, they are merged again and again
    // while a long screen is built: a row of 10,000 cost 1.3 times as much as one of 100.
    mallopt(M_MXFAST, 0);
    // One arena for all threads. With one for each, blocks freed by another thread fragment the
    // arena that they came from: rows took up to 1.7 times as long, a long screen from a plug-in
    // process up to 1.8 times. docs/performance.md has the benchmarks.
    mallopt(M_ARENA_MAX, 1);
#endif
}
