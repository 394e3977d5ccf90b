// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Keeps the descriptors from \a first on from the programs that this process becomes or starts:
/// close-on-exec, also for those that libraries opened without it. Async-signal-safe, so that it
/// may be called between fork and exec.
void keepDescriptorsFromPrograms(int first);
