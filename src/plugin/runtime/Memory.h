// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Sets up the C library's allocator for what these programs do most: rows of long screens, which
/// are many small blocks that are made together and let go together. First thing in a process.
void setUpMemory();
