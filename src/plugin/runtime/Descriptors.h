// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Makes the descriptors from \a first on close-on-exec, those of libraries included, so that no
/// other program inherits them. Async-signal-safe: may be called between fork and exec.
void keepDescriptorsFromPrograms(int first);
