// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Gives up, for good, what decoding does not need: the network altogether, files but for the
/// libraries that GStreamer loads on demand, processes, new privileges, and more than a fair share
/// of memory and descriptors. Call it while the process has one thread. What the kernel does not
/// offer is done without.
void confineDecoder();
