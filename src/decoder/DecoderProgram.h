// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// The program vesk-decoder: takes a stream's bytes from the socket DecoderSocket and answers with
/// what it decodes, confined, until the socket ends. Returns the exit status.
int runDecoder();
