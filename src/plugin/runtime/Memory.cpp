// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/Memory.h"

#include <malloc.h>

void setUpMemory()
{
    // Merging blocks as they are freed keeps a row of a long screen as cheap as one of a short
    // screen; fastbins would merge them over and over.
    mallopt(M_MXFAST, 0);
    // Rows are made on one thread and let go on another. An arena for each thread would be cut to
    // pieces by that, and hold what the others could use.
    mallopt(M_ARENA_MAX, 1);
}
