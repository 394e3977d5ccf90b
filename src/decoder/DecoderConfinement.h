// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Sandboxes the process irrevocably: no network, no files except the libraries that GStreamer
/// loads on demand, no new processes or privileges, and limits on memory and descriptors. Call it
/// while the process has a single thread. Mechanisms that the kernel lacks are skipped.
void confineDecoder();
