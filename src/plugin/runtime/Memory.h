// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Tunes glibc's allocator for rows of long screens: 2,000 of them are 98,000 small blocks that are
/// allocated together on one thread and freed together on another. To be called before there are
/// other threads.
void setUpMemory();
