// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/confinement/CallFilter.h"

#include <cstdint>
#include <memory>

/// Sandboxes the process irrevocably: no network, no files except the libraries that GStreamer
/// loads on demand, no new processes or privileges, and limits on memory and descriptors. Call it
/// while the process has a single thread. Mechanisms that the kernel lacks are skipped.
void confineDecoder();

/// The system calls that are left to a decoder, as the last part of confineDecoder(); and for tests
/// those of other architectures.
std::unique_ptr<CallFilter> callsOfDecoders(std::uint32_t architecture = SCMP_ARCH_NATIVE);
